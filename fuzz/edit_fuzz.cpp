// Input: five bytes that choose encoding, section, key, index and whether the last line has an end, a line with the
// value, then one byte for each line of an INI file and its end. One value is set and then removed: it is read back, no
// other question gets another answer, no byte outside of its line changes, and of a new value nothing remains but its
// header.
#include <algorithm>
#include <map>
#include <optional>

#include "editoption.h"
#include "fuzz_input.h"
#include "request.h"
#include "veltrane/platform/files/internal/replacement.h"
#include "veltrane/platform/sources/internal/snapshot.h"
#include "veltrane/platform/sources/profile.h"
#include "veltrane/platform/text/internal/utf16.h"

using namespace veltrane;
using namespace veltrane::config;
using namespace veltrane::detail;

namespace {

constexpr wchar_t PATH[] = L"/edited.ini";
constexpr const wchar_t* SECTIONS[] = {L"ROOT", L"USER", L"base\\FILES\\%d", L"base", L"b\u00E4r\\FILES\\%d"};
constexpr const wchar_t* KEYS[] = {L"logfile", L"map-file", L"load-dictionary", L"name"};
constexpr const wchar_t* LINES[] = {
    L"",
    L"  ",
    L"; logfile = comment",
    L"[ROOT]",
    L" [user] ; x",
    L"[base\\FILES\\1]",
    L"[BASE\\files\\2",
    L"[base]",
    L"[b\u00E4r\\FILES\\2]",
    L"[]",
    L"logfile = a",
    L"LOGFILE='b'",
    L"\tlogfile\t=\t\"c \"  ",
    L"logfile=",
    L"logfile =   ",
    L"map-file=\u00E9.map",
    L"map-file = \"\"",
    L"load-dictionary-1 = a",
    L"load-dictionary-3=b",
    L"load = c",
    L"load-dictionary = d",
    L"name     = \"x",
    L"bare",
    L"= no key",
};
constexpr const wchar_t* ENDS[] = {L"\n", L"\r\n", L"\r"};

std::string InUtf16(const CString& text, bool isLittle) {
    std::string bytes;
    for (const wchar_t element : text.View()) {
        bytes += static_cast<char>(isLittle ? element : element >> 8);
        bytes += static_cast<char>(isLittle ? element >> 8 : element);
    }
    return bytes;
}

std::string InLatin1(const CString& text) {
    std::string bytes;
    for (const wchar_t element : text.View()) bytes += static_cast<char>(element);
    return bytes;
}

std::string Encoded(const CString& text, unsigned encoding) {
    switch (encoding % 5) {
        case 0:
            return ToUtf8(text);
        case 1:
            return "\xEF\xBB\xBF" + ToUtf8(text);
        case 2:
            return "\xFF\xFE" + InUtf16(text, /*isLittle*/ true);
        case 3:
            return "\xFE\xFF" + InUtf16(text, /*isLittle*/ false);
        default:
            return InLatin1(text);
    }
}

CString TextOf(std::string_view lines, bool hasEnd) {
    CString text;
    for (const char byte : lines) {
        const auto choice = static_cast<unsigned char>(byte);
        text += LINES[choice % std::size(LINES)];
        const bool isLast = &byte == &lines.back();
        if (!isLast || hasEnd) text += ENDS[choice / std::size(LINES) % std::size(ENDS)];
    }
    return text;
}

using Answers = std::map<std::pair<CString, CString>, CString>;

/// What the plain call gives for each section and key of the vocabulary.
Answers AnswersOf(const std::string& bytes) {
    const SourceReplacement replacement{PATH, bytes};
    const SourceSnapshot snapshot;
    Answers answers;
    for (const wchar_t* section : {L"ROOT", L"USER", L"base", L"base\\FILES\\1", L"base\\FILES\\2", L"base\\FILES\\3",
                                   L"b\u00E4r\\FILES\\1", L"b\u00E4r\\FILES\\2", L"b\u00E4r\\FILES\\3", L""}) {
        for (const wchar_t* key : {L"logfile", L"map-file", L"load-dictionary", L"load-dictionary-1", L"load",
                                   L"load-dictionary-2", L"load-dictionary-3", L"name"}) {
            wchar_t buffer[4096];
            const unsigned count = GetPrivateProfileStringW(section, key, L"\x1", buffer, 4096, PATH);
            answers[{section, key}] = std::wstring_view{buffer, count};
        }
    }
    return answers;
}

void RequireSameOthers(const std::string& before, const std::string& after, const SourceLine& line) {
    Answers others = AnswersOf(after);
    for (const auto& [question, answer] : AnswersOf(before)) {
        const bool isAsked =
            line.section.CompareNoCase(question.first) == 0 && line.key.CompareNoCase(question.second) == 0;
        REQUIRE(isAsked || others[question] == answer);
    }
}

/// Every byte outside of the one piece stays.
void RequireSameBytes(const FileEdit& edit, const std::string& result) {
    const std::vector<EditPiece> pieces = edit.Pieces();
    REQUIRE(pieces.size() == 1);
    const auto& [place, bytes] = pieces[0];
    REQUIRE(result == edit.Bytes().substr(0, place.start) + bytes + edit.Bytes().substr(place.End()));
    const auto end = static_cast<std::uint32_t>(edit.Bytes().size());
    for (const SourceLine& line : edit.View().lines) {
        const bool isInside = place.start >= line.place.start && place.End() <= line.place.End();
        const bool isBetween = place.length == 0 && place.start == line.place.End() + line.endLength;
        if (isInside || isBetween) return;
    }
    REQUIRE(place.length == 0 && end - place.start <= end);
}

void CheckUnset(const FileEdit& edit, const std::string& result, const OptionKey& key, bool hasMadeHeader) {
    FileEdit back{PATH, result};
    const std::vector<SourceLine> removed = UnsetOption(back, key, /*withAll*/ false);
    REQUIRE(removed.size() == 1);
    if (hasMadeHeader) {
        REQUIRE(back.Result().starts_with(edit.Bytes()));
    } else {
        REQUIRE(back.Result() == edit.Bytes());
    }
}

void Check(FileEdit& edit, const OptionKey& key, const CString& value) {
    const bool isNew = !FindAnswer(edit, key);
    std::string result;
    SourceLine line;
    try {
        const int number = SetOption(edit, key, value);
        result = edit.Result();
        line = FileEdit{PATH, result}.Line(number);
    } catch (const Refusal&) {
        const auto isSurrogate = [](wchar_t element) { return element >= 0xD800 && element < 0xE000; };
        const bool isText = !ReasonAgainstValue(value) && std::ranges::none_of(value.View(), isSurrogate);
        REQUIRE(!edit.IsChanged() && !(isText && !edit.View().hasWindows1252));  // else the file can hold it
        return;
    }
    try {
        ProveChange(edit, FileEdit{PATH, result}, key, value, line);
    } catch (const Refusal&) {
        REQUIRE(key.index);  // the file gives an index twice, or keys without an index would get another
        return;
    }
    REQUIRE(line.answers && line.value == value);
    RequireSameOthers(edit.Bytes(), result, line);
    RequireSameBytes(edit, result);
    REQUIRE(!edit.Diff("edited.ini").empty() || result == edit.Bytes());
    const auto made = FileEdit{PATH, result}.View().lines.size() - edit.View().lines.size();
    REQUIRE(made == 0 || isNew);
    if (isNew) CheckUnset(edit, result, key, /*hasMadeHeader*/ made == 2);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t choices = 5;
    std::string_view input = InputText(data, size);
    if (input.size() < choices) return 0;
    const auto choice = [&, head = input.substr(0, choices)](std::size_t i) {
        return static_cast<unsigned char>(head[i]);
    };
    input.remove_prefix(choices);
    const CString value = FromUtf8(NextLine(input));
    OptionKey key{SECTIONS[choice(1) % std::size(SECTIONS)], KEYS[choice(2) % std::size(KEYS)]};
    if (key.section.Find(L"%d") >= 0 || key.key == L"load-dictionary") key.index = choice(3) % 4;
    FileEdit edit{PATH, Encoded(TextOf(input.substr(0, 200), choice(4) % 2 == 0), choice(0))};
    Check(edit, key, value);
    return 0;
}
