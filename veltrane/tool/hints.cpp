#include "veltrane/tool/hints.h"

#include <algorithm>
#include <vector>

#include "veltrane/config/xconfiguration.h"
#include "veltrane/foundation/nearest.h"
#include "veltrane/foundation/xstring.h"
#include "veltrane/options/xoptiondefinition.h"

namespace veltrane {

namespace {

CString NearestOption(CString name) {
    std::vector<CString> names;
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (row->eOption != eOptionTitle) names.emplace_back(row->szLongName);
    }
    const int equals = name.Find(L'=');
    if (equals >= 0) name = name.Left(equals);
    name.TrimLeft(L'-').MakeLower();
    const bool isName = std::ranges::find(names, name) != names.end();  // after one hyphen instead of two
    return isName ? name : Nearest(name, names);
}

void AddHint(XException& error, const CString& hint) {
    error.AddMessage(L"    <---- " + hint + L" ---->");
}

// '--name=x' is spelled '--name x' here.
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
void AddPlaces(XException& error, const ErrorSubject& subject) {
    CString hint;
    CString nearest;
    for (const OptionPlace& place : subject.places) {
        if (place.file.IsEmpty()) continue;
        AddString(hint, FormatText(L"[%s] of <%s>", place.section, place.file));
        const std::vector<CString> sections = SectionNames(place.file);
        const bool isThere = std::ranges::any_of(
            sections, [&](const CString& section) { return section.CompareNoCase(place.section) == 0; });
        if (!isThere && nearest.IsEmpty()) nearest = Nearest(place.section, sections);
    }
    if (hint.IsEmpty()) return;
    AddHint(error, L"Looked for in " + hint);
    AddHint(error, nearest.IsEmpty() ? FormatText(L"Or give it with <--%s> on the command line", subject.option)
                                     : FormatText(L"Did you mean [%s]?", nearest));
}

void AddLine(XException& error, const OptionPlace& place) {
    if (place.line == 0) return;
    AddHint(error, FormatText(L"See <%s>, line %d: %s=%s", place.file, place.line, place.key, place.text));
}

// The folder, or the basic file in it.
CString WayToMetadata(const ErrorSubject& subject) {
    if (subject.option != L"metadata") return {};
    if (subject.places.empty()) return L"Name the folder with <--metadata FOLDER>";
    return subject.places[0].layer == OptionLayer::BasicFile ? L"Name its folder with <--metadata FOLDER>" : L"";
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
    if (const CString way = WayToMetadata(subject); !way.IsEmpty()) return AddHint(error, way);
    const auto found = std::ranges::find(subject.places, true, &OptionPlace::found);
    if (found == subject.places.end()) {
        AddPlaces(error, subject);
    } else if (subject.index >= 0) {
        for (const OptionPlace& place : subject.places) AddLine(error, place);
    } else {
        AddLine(error, *found);
    }
}

}  // namespace veltrane
