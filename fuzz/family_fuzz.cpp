// Input: a line with the section and one with the pattern, then the file. The indexes and values of a family, its
// errors and the names of the keys in a family of sections are compared with a walk over the names of the file.
#include <map>
#include <set>
#include <vector>

#include "fuzz_input.h"
#include "fuzz_text.h"
#include "veltrane/config/xconfiguration.h"
#include "veltrane/foundation/xexception.h"
#include "veltrane/platform/sources/internal/snapshot.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

/// What a question gives: the result up to an error, and the error.
template <class Result>
struct Outcome {
    Result result;
    CString error;

    bool operator==(const Outcome&) const = default;
};

/// The number that a format finds in an item.
std::optional<int> Scan(const Text& item, const Text& format) {
    std::size_t at = 0;
    for (std::size_t i = 0; i < format.size(); ++i) {
        const bool isPercent = format[i] == L'%' && i + 1 < format.size();
        if (isPercent && format[i + 1] == L'd') return NumberAt(item, at);
        if (isPercent && format[i + 1] == L'%') ++i;
        if (IsWhiteSpace(format[i])) {
            while (at < item.size() && IsWhiteSpace(item[at])) ++at;
        } else if (at >= item.size() || item[at++] != format[i]) {
            return {};
        }
    }
    return {};
}

std::vector<Text> NamesOf(const XConfiguration& file, const CString& section) {
    CString list;
    file.GetKeyValue(list, section, {}, /*assignEmpty*/ true);
    std::vector<Text> names;
    const Text text = Folded(Text{list.View()});
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(L',', at), text.size());
        if (end == at) break;
        names.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return names;
}

/// The names of the keys of each section of a form; an empty list makes no entry.
std::map<int, CString> ExpectedNames(const XConfiguration& file, const CString& form) {
    std::map<int, CString> names;
    for (const Text& section : NamesOf(file, {})) {
        const std::optional<int> index = Scan(section, Folded(Text{form.View()}));
        CString list;
        if (!index) continue;
        file.GetKeyValue(list, CString{section}, {}, /*assignEmpty*/ true);
        if (!list.IsEmpty() || names.contains(*index)) names[*index] = list;
    }
    return names;
}

void RequireNames(const XConfiguration& file, const CString& form) {
    const std::map<int, CString> expected = ExpectedNames(file, form);
    XMapInt2CString names;
    REQUIRE(file.GetOptionNameSet(names, form) && names.Size() == static_cast<int>(expected.size()));
    for (const auto& [index, list] : expected) REQUIRE(names.Get(index) == list);
}

int Next(int index) {
    return index == INT_MAX ? INT_MIN : index + 1;
}

/// Calls visit(name, index) for each member until it returns false; next() gives the index of a bare key.
template <class NextIndex, class Visit>
CString ForEachMember(const XConfiguration& file, const CString& section, const CString& pattern, NextIndex next,
                      Visit visit) {
    const bool isOfSections = section.IsEmpty() || section.Find(L"%d") >= 0;
    const CString form = isOfSections ? section : pattern + L"-%d";
    const Text format = Folded(Text{form.View()});
    for (const Text& name : NamesOf(file, isOfSections ? CString{} : section)) {
        std::optional<int> index = Scan(name, format);
        if (!index && !isOfSections && format.starts_with(name)) index = next();
        if (index && !visit(name, *index)) return FormatText(L"Multiple options <%s> for index <%d>!", pattern, *index);
    }
    return {};
}

Outcome<std::set<int>> ExpectedIndexes(const XConfiguration& file, const CString& section, const CString& pattern) {
    std::set<int> indexes;
    const auto next = [&] { return indexes.empty() || *indexes.rbegin() < 0 ? 0 : Next(*indexes.rbegin()); };
    const CString error = ForEachMember(file, section, pattern, next,
                                        [&](const Text&, int index) { return indexes.insert(index).second; });
    return {indexes, error};
}

Outcome<std::map<int, CString>> ExpectedValues(const XConfiguration& file, const CString& section,
                                               const CString& pattern) {
    std::map<int, CString> values;
    const auto next = [&] { return values.empty() || values.begin()->first < 0 ? 0 : Next(values.rbegin()->first); };
    const bool isOfSections = section.IsEmpty() || section.Find(L"%d") >= 0;
    const CString error = ForEachMember(file, section, pattern, next, [&](const Text& name, int index) {
        CString value;
        file.GetKeyValue(value, isOfSections ? CString{name} : section, isOfSections ? pattern : CString{name},
                         /*assignEmpty*/ false);
        const bool isTwice = values.contains(index);
        if (!isTwice && !value.IsEmpty()) values[index] = value;
        return !isTwice;
    });
    return {values, error};
}

template <class Ask>
CString ErrorOf(Ask ask) try {
    ask();
    return {};
} catch (const XException& error) {
    return error.GetMessage();
}

Outcome<std::set<int>> Indexes(const XConfiguration& file, const CString& section, const CString& pattern) {
    XSetInt indexes;
    const CString error = ErrorOf([&] { file.GetKeyIndexSet(indexes, section, pattern); });
    std::set<int> all;
    for (int i = 0; i < indexes.Size(); ++i) REQUIRE(all.insert(indexes.GetConstRefAt(i)).second);
    return {all, error};
}

/// The values under the indexes that are expected, and whether there are others.
Outcome<std::map<int, CString>> Values(const XConfiguration& file, const CString& section, const CString& pattern,
                                       const std::map<int, CString>& expected, std::vector<IndexedPlace>* places) {
    XMapInt2CString values;
    const CString error = ErrorOf([&] { file.GetKeyValueSet(values, section, pattern, places); });
    REQUIRE(values.Size() == static_cast<int>(expected.size()));
    std::map<int, CString> all;
    for (const auto& [index, value] : expected) all[index] = values.Get(index);
    return {all, error};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryFile memory;
    std::string_view input = InputText(data, size);
    const CString section = FromUtf8(NextLine(input));
    const CString pattern = FromUtf8(NextLine(input));
    memory.Write(input);
    const XConfiguration file{memory.Name()};
    RequireNames(file, section);
    if (pattern.IsEmpty()) {
        REQUIRE(!Indexes(file, section, pattern).error.IsEmpty());
        REQUIRE(!Values(file, section, pattern, {}, nullptr).error.IsEmpty());
        return 0;
    }
    REQUIRE(Indexes(file, section, pattern) == ExpectedIndexes(file, section, pattern));
    const auto expected = ExpectedValues(file, section, pattern);
    REQUIRE(Values(file, section, pattern, expected.result, nullptr) == expected);
    const SourceSnapshot snapshot;
    std::vector<IndexedPlace> places;
    REQUIRE(Values(file, section, pattern, expected.result, &places) == expected);
    for (const auto& [index, place] : places) {
        const auto value = expected.result.find(index);
        REQUIRE(value != expected.result.end());
        REQUIRE(place.text == value->second || !expected.error.IsEmpty());
    }
    return 0;
}
