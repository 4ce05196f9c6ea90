#include "hints.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "veltrane/config/xconfiguration.h"
#include "veltrane/foundation/xstring.h"
#include "veltrane/options/xoptiondefinition.h"

using namespace veltrane;

namespace {

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

// The text that is nearest to a name, empty when none is near: about one slip in three letters.
CString Nearest(const CString& name, const std::vector<CString>& texts) {
    constexpr int LONGEST_NAME = 64;  // nothing longer is near to any name
    CString nearest;
    if (name.GetLength() > LONGEST_NAME) return nearest;
    int best = std::min(3, name.GetLength() / 3) + 1;
    for (const CString& text : texts) {
        const int distance = EditDistance(name, text);
        if (distance >= best) continue;
        best = distance;
        nearest = text;
    }
    return nearest;
}

CString NearestOption(CString name) {
    std::vector<CString> names;
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (row->eOption != eOptionTitle) names.emplace_back(row->szLongName);
    }
    const int equals = name.Find(L'=');
    if (equals >= 0) name = name.Left(equals);
    return Nearest(name.TrimLeft(L'-').MakeLower(), names);
}

void AddHint(XException& error, const CString& hint) {
    error.AddMessage(L"    <---- " + hint + L" ---->");
}

// '--name=x' is written with a blank here.
void AddSpelling(XException& error, const CString& argument) {
    CString option;
    CString value;
    SplitString(option, value, argument, L'=');
    if (!option.IsEmpty() && FindOptionDefinition(option)) {
        AddHint(error, FormatText(L"Write <%s %s>", option, value));
        return;
    }
    const CString nearest = NearestOption(argument);
    if (!nearest.IsEmpty()) AddHint(error, FormatText(L"Did you mean <--%s>?", nearest));
}

std::vector<CString> SectionNames(const CString& file) {
    CString list;
    XConfiguration{file}.GetKeyValue(list, {}, {}, /*assignEmpty*/ false);
    std::vector<CString> names;
    for (int i = 0; !GetArgument(i, list).IsEmpty(); ++i) names.push_back(GetArgument(i, list));
    return names;
}

// Where a missing value was looked for, and the section that may have been meant.
void AddPlaces(XException& error, const std::vector<ErrorPlace>& places) {
    CString hint;
    CString nearest;
    for (const ErrorPlace& place : places) {
        if (place.file.IsEmpty()) continue;
        AddString(hint, FormatText(L"[%s] of <%s>", place.section, place.file));
        const std::vector<CString> sections = SectionNames(place.file);
        const bool isThere = std::ranges::any_of(
            sections, [&](const CString& section) { return section.CompareNoCase(place.section) == 0; });
        if (!isThere && nearest.IsEmpty()) nearest = Nearest(place.section, sections);
    }
    if (!hint.IsEmpty()) AddHint(error, L"Looked for in " + hint);
    if (!nearest.IsEmpty()) AddHint(error, FormatText(L"Did you mean [%s]?", nearest));
}

void AddLine(XException& error, const ErrorPlace& place) {
    if (place.line == 0) return;
    AddHint(error, FormatText(L"See <%s>, line %d: %s=%s", place.file, place.line, place.key, place.text));
}

bool IsMetadataMissing(const ErrorSubject& subject) {
    return subject.option == L"metadata" && subject.places.empty();
}

}  // namespace

void AddHints(XException& error) {
    if (!error.GetSubject()) return;
    const ErrorSubject subject = *error.GetSubject();
    if (!subject.argument.IsEmpty() && subject.option.IsEmpty()) {
        AddSpelling(error, subject.argument);
    } else if (!subject.reference.IsEmpty()) {
        const CString nearest = subject.argument.IsEmpty() ? CString{} : NearestOption(subject.reference);
        if (!nearest.IsEmpty()) AddHint(error, FormatText(L"Did you mean <%%%s%%>?", nearest));
    }
    if (IsMetadataMissing(subject)) AddHint(error, L"Name the folder with <--metadata FOLDER>");
    const auto found = std::ranges::find(subject.places, true, &ErrorPlace::found);
    if (found == subject.places.end()) {
        AddPlaces(error, subject.places);
    } else if (subject.index >= 0) {
        for (const ErrorPlace& place : subject.places) AddLine(error, place);
    } else {
        AddLine(error, *found);
    }
}
