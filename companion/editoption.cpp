#include "editoption.h"

#include <algorithm>
#include <tuple>

#include "nametext.h"
#include "request.h"
#include "veltrane/collections/xmap.h"
#include "veltrane/config/xconfiguration.h"
#include "veltrane/platform/files/internal/replacement.h"
#include "veltrane/platform/sources/internal/snapshot.h"
#include "veltrane/platform/text/internal/indexformat.h"

namespace veltrane::config {

using namespace detail;

namespace {

using Kind = SourceLine::Kind;

/// Whether a section is the one of a value, which is asked for without the blanks at its ends.
bool IsSectionOf(const OptionKey& key, const CString& section) {
    int index = 0;
    if (!key.HasIndexInSection()) return IsSameName(section, CString{key.section}.Trim(L" "));
    return MatchIndex(CString{section}.MakeLower(), CString{key.section}.MakeLower(), index) && index == *key.index;
}

/// Whether an entry is of a value by its names alone.
bool IsEntryOf(const OptionKey& key, const SourceLine& line) {
    if (line.kind != Kind::Entry || !IsSectionOf(key, line.section)) return false;
    if (!key.index || key.HasIndexInSection()) return IsSameName(line.key, key.key);
    std::optional<int> index;
    return XConfiguration::IsFamilyKey(line.key, key.key, index) && index == key.index;
}

/// The places of a family's values in a file, up to an index that is given twice, which lint reports.
std::vector<IndexedPlace> PlacesIn(const CString& path, const OptionKey& key) {
    const SourceSnapshot snapshot;
    XMapInt2CString values;
    std::vector<IndexedPlace> places;
    try {
        for (const CString& file : key.weaker)
            XConfiguration{file}.GetKeyValueSet(values, key.section, key.key, &places);
        places.clear();
        XConfiguration{path}.GetKeyValueSet(values, key.section, key.key, &places);
    } catch (const XException&) {
        std::erase_if(places, [&](const IndexedPlace& place) { return place.place.file != path; });
    }
    return places;
}

std::vector<IndexedPlace> PlacesIn(const FileEdit& edit, const OptionKey& key) {
    const SourceReplacement replacement{edit.Path(), edit.Bytes()};
    return PlacesIn(edit.Path(), key);
}

// With blanks around '=', unless the neighbour has none.
CString NewEntry(const FileEdit& edit, const OptionKey& key, const CString& value, const SourceLine* neighbour) {
    CString between = L" = ";
    if (neighbour && neighbour->kind == Kind::Entry && !neighbour->isQuoted) {
        const std::uint32_t end = neighbour->namePlace.End();
        const SourceRange place{end, neighbour->valuePlace.start - end};
        if (DecodeSource(place.In(edit.Bytes()), edit.View().encoding) == L"=") between = L"=";
    }
    const bool isNumbered = key.index && !key.HasIndexInSection();
    return key.key + (isNumbered ? CString{FormatText(L"-%d", *key.index)} : CString{}) + between + QuotedValue(value);
}

/// The answers of a file except those for the key of one line.
std::vector<std::tuple<CString, CString, CString>> OtherAnswers(const SourceFileLines& view, const SourceLine& line) {
    std::vector<std::tuple<CString, CString, CString>> answers;
    for (const SourceLine& each : view.lines) {
        const bool isOfSection = IsSameName(each.section, line.section);
        const bool isChanged = isOfSection && (each.kind == Kind::Section || IsSameName(each.key, line.key));
        const bool isTold = each.kind == Kind::Section || (each.kind == Kind::Entry && each.answers);
        if (isTold && !isChanged) answers.emplace_back(each.section, each.key, each.value);
    }
    return answers;
}

std::vector<std::tuple<int, CString, CString>> OtherIndexes(const std::vector<IndexedPlace>& places, int index) {
    std::vector<std::tuple<int, CString, CString>> others;
    for (const IndexedPlace& place : places) {
        if (place.index != index) others.emplace_back(place.index, place.place.key, place.place.text);
    }
    return others;
}

bool IsRead(const FileEdit& edit, const OptionKey& key, const CString& value) {
    if (key.index) {
        const auto isValue = [&](const IndexedPlace& place) {
            return place.index == *key.index && place.place.text == value;
        };
        return std::ranges::any_of(PlacesIn(edit.Path(), key), isValue);
    }
    CString text;
    return XConfiguration{edit.Path()}.GetKeyValue(text, key.section, key.key, /*assignEmpty*/ false) && text == value;
}

}  // namespace

const SourceLine* FindAnswer(const FileEdit& edit, const OptionKey& key) {
    const auto& lines = edit.View().lines;
    const auto isAnswer = [&](const SourceLine& line) { return line.answers && IsEntryOf(key, line); };
    if (const auto found = std::ranges::find_if(lines, isAnswer); found != lines.end()) return &*found;
    if (!key.index) return nullptr;
    for (const IndexedPlace& place : PlacesIn(edit, key)) {
        if (place.index == *key.index && place.place.line > 0) return &edit.Line(place.place.line);
    }
    return nullptr;
}

int SetOption(FileEdit& edit, const OptionKey& key, const CString& value) {
    if (const SourceLine* const answer = FindAnswer(edit, key)) {
        edit.SetValue(*answer, value);
        return answer->number;
    }
    RequireValue(value);
    const auto isOwn = [&](const CString& section) { return IsSectionOf(key, section); };
    if (const SourceLine* const header = edit.FindHeader(isOwn)) {
        const SourceLine& last = edit.LastEntry(*header);
        edit.InsertAfter(last.number, {NewEntry(edit, key, value, &last)});
        return last.number + 1;
    }
    const CString name = key.HasIndexInSection() ? FormatIndex(key.section, *key.index) : key.section;
    const auto count = static_cast<int>(edit.View().lines.size());
    edit.InsertAfter(count, {L"[" + name + L"]", NewEntry(edit, key, value, nullptr)});
    return count + 2;
}

std::vector<SourceLine> UnsetOption(FileEdit& edit, const OptionKey& key, bool withAll) {
    std::vector<SourceLine> removed;
    const SourceLine* const answer = FindAnswer(edit, key);
    for (const SourceLine& line : edit.View().lines) {
        if (&line == answer || (withAll && IsEntryOf(key, line))) removed.push_back(line);
    }
    for (const SourceLine& line : removed) edit.Remove(line);
    return removed;
}

void ProveChange(const FileEdit& edit, const FileEdit& after, const OptionKey& key, const std::optional<CString>& value,
                 const SourceLine& line) {
    const auto before = key.index ? PlacesIn(edit, key) : std::vector<IndexedPlace>{};
    const SourceReplacement replacement{after.Path(), after.Bytes()};
    const SourceSnapshot snapshot;
    if (value && !IsRead(after, key, *value))
        throw Refusal{L"after the change this value would not be read from the file; nothing is changed"};
    bool isSame = OtherAnswers(edit.View(), line) == OtherAnswers(after.View(), line);
    if (key.index)
        isSame = isSame && OtherIndexes(before, *key.index) == OtherIndexes(PlacesIn(after.Path(), key), *key.index);
    if (!isSame) throw Refusal{L"other values in the file would change too; nothing is changed"};
}

}  // namespace veltrane::config
