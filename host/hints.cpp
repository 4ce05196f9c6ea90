#include "hints.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "veltrane/foundation/xstring.h"
#include "veltrane/options/xoptiondefinition.h"

using namespace veltrane;

namespace {

// What the message names in angle brackets.
std::vector<CString> NamedTexts(const CString& message) {
    std::vector<CString> texts;
    int close = 0;
    for (int open = message.Find(L'<'); open >= 0; open = message.Find(L'<', close + 1)) {
        close = message.Find(L'>', open);
        if (close < 0) break;
        if (close > open + 1) texts.push_back(message.Mid(open + 1, close - open - 1));
    }
    return texts;
}

// Number of elements to insert, delete or change until one text is the other.
int EditDistance(const CString& left, const CString& right) {
    std::vector<int> row(static_cast<std::size_t>(right.GetLength()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < left.GetLength(); ++i) {
        int diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 1; j < row.size(); ++j) {
            const int change = diagonal + (left[i] == right[static_cast<int>(j) - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, change});
        }
    }
    return row.back();
}

// The long name that is nearest, empty when none is near: about one slip in three letters.
CString NearestOption(CString name) {
    constexpr int LONGEST_NAME = 64;  // nothing longer is near to any name of the table
    const int equals = name.Find(L'=');
    if (equals >= 0) name = name.Left(equals);
    name.TrimLeft(L'-').MakeLower();
    if (name.GetLength() > LONGEST_NAME) return {};
    CString nearest;
    int best = std::min(3, name.GetLength() / 3) + 1;
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        const int distance = row->eOption == eOptionTitle ? best : EditDistance(name, row->szLongName);
        if (distance >= best) continue;
        best = distance;
        nearest = row->szLongName;
    }
    return nearest;
}

// '--name=x' is written with a blank here.
bool AddSpelling(XException& error, const CString& argument) {
    CString option;
    CString value;
    SplitString(option, value, argument, L'=');
    if (option.IsEmpty() || !FindOptionDefinition(option)) return false;
    error.AddMessage(FormatText(L"    <---- Write <%s %s> ---->", option, value));
    return true;
}

}  // namespace

void AddHints(XException& error, const Provenance& provenance) {
    const CString message = error.GetMessage();
    const std::vector<CString> texts = NamedTexts(message);
    const bool isArgument = message.Find(L"command line option <") >= 0;
    const bool isUnknown = isArgument || message.Find(L"is not known by the system!") >= 0;
    if (texts.empty() || (isArgument && AddSpelling(error, texts.front()))) return;
    if (isUnknown) {
        // The reasons in front name other options; the unknown one stands last but for the hint of the command line.
        const CString nearest = NearestOption(isArgument ? texts.front() : texts.back());
        if (!nearest.IsEmpty()) error.AddMessage(FormatText(L"    <---- Did you mean <--%s>? ---->", nearest));
    }
    if (isArgument) return;
    // An index given twice: the key that carries it says more than the name of its family.
    const bool isIndexed = texts.size() >= 2 && message.Find(L"> for index <") >= 0;
    const SourceEvent* answer =
        isIndexed ? provenance.AnswerBehind({texts[texts.size() - 2] + L"-" + texts.back()}) : nullptr;
    if (!answer) answer = provenance.AnswerBehind(texts);
    if (answer) {
        error.AddMessage(FormatText(L"    <---- See <%s>, line %d: %s=%s ---->", answer->file, answer->line,
                                    answer->key, answer->value));
    }
}
