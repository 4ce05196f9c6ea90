#include "veltrane/options/detail/xoptionsources.h"

#include <algorithm>
#include <array>
#include <utility>

#include "veltrane/platform/sources/environment.h"
#include "veltrane/platform/text/internal/indexformat.h"

namespace veltrane::detail {

namespace {

// In the order of the questions, the weakest source first. A source for ROOT only is asked after them and overrides
// nothing.
constexpr auto QUESTIONS = [] {
    std::array<OptionLayerRow, OPTION_SOURCES.size()> rows{};
    std::ranges::reverse_copy(OPTION_SOURCES, rows.begin());
    return rows;
}();

}  // namespace

OptionPlace* LastFound(std::vector<OptionPlace>& places) {
    const auto last =
        std::find_if(places.rbegin(), places.rend(), [](const OptionPlace& place) { return place.found; });
    return last == places.rend() ? nullptr : &*last;
}

OptionOrigin ReleaseOrigin(std::vector<OptionPlace>& places) {
    OptionPlace* const last = LastFound(places);
    if (!last) return {};
    CString text = std::exchange(last->text, {});
    OptionOrigin origin = *last;
    origin.text = std::move(text);
    return origin;
}

bool IsRootSection(const CString& section) {
    return section == FindConfigSection(eSectionRoot)->szName;
}

const XConfiguration* XOptionSources::FileOf(OptionLayer layer) const {
    if (layer == OptionLayer::UserFile) return userFile.get();
    return layer == OptionLayer::BasicFile ? basicFile.get() : nullptr;
}

bool XOptionSources::Has(const OptionLayerRow& row) const {
    if (row.isFile) return FileOf(row.layer) != nullptr;
    return row.layer != OptionLayer::Registry || registry;
}

bool XOptionSources::Ask(OptionLayer layer, CString& value, const CString& section, const CString& key,
                         bool assignEmpty, SourcePlace* place) const {
    if (const XConfiguration* const file = FileOf(layer)) {
        return file->GetKeyValue(value, section, key, assignEmpty && layer == OptionLayer::BasicFile, place);
    }
    if (layer == OptionLayer::Registry) return registry->GetValue(value, section, key, place);
    if (!GetEnvironmentText(value, key) || value.IsEmpty()) return false;
    if (place) *place = {{}, 0, {}, key, value};
    return true;
}

bool XOptionSources::AskNoting(OptionLayer layer, CString& value, const CString& section, const CString& key,
                               bool assignEmpty, std::vector<OptionPlace>* places) const {
    if (!places) return Ask(layer, value, section, key, assignEmpty, nullptr);
    OptionPlace place{{{{}, 0, section, key, {}}, layer}, false};
    place.found = Ask(layer, value, section, key, assignEmpty, &place);
    places->push_back(std::move(place));
    return places->back().found;
}

bool XOptionSources::GetKeyValue(CString& value, const CString& section, const CString& key, bool assignEmpty,
                                 std::vector<OptionPlace>* places) const {
    bool isFound = false;
    if (places) places->reserve(places->size() + OPTION_SOURCES.size());
    for (const OptionLayerRow& row : QUESTIONS) {
        if (row.isRootOnly || !Has(row)) continue;
        isFound |= AskNoting(row.layer, value, section, key, assignEmpty, places);
    }
    return isFound;
}

void XOptionSources::GetValue(CString& value, const CString& section, const CString& key,
                              std::vector<OptionPlace>* places) const {
    GetKeyValue(value, section, key, /*assignEmpty*/ false, places);
    if (!value.IsEmpty() || !IsRootSection(section)) return;
    for (const OptionLayerRow& row : OPTION_SOURCES) {
        if (row.isRootOnly) AskNoting(row.layer, value, section, key, /*assignEmpty*/ false, places);
    }
}

void XOptionSources::Complete(std::vector<OptionPlace>& places) const {
    for (OptionPlace& place : places) {
        if (!place.found) place = PlaceOf(place.layer, place.section, place.key);
    }
}

XOptionFamily XOptionSources::ReadFamily(const CString& section, const CString& pattern, bool withPlaces) const {
    XOptionFamily family;
    for (const OptionLayerRow& row : QUESTIONS) {
        const XConfiguration* const file = FileOf(row.layer);
        if (!file || family.fault) continue;
        std::vector<IndexedPlace> places;
        try {
            file->GetKeyValueSet(family.values, section, pattern, withPlaces ? &places : nullptr);
        } catch (const XException&) {  // the values in front of the fault are given
            family.fault = std::current_exception();
        }
        for (IndexedPlace& found : places) {
            family.places.emplace(found.index, OptionOrigin{std::move(found.place), row.layer});
        }
    }
    return family;
}

bool XOptionSources::GetOptionNameSet(XMapInt2CString& names, const CString& sectionFormat) const {
    bool isFound = false;
    for (const OptionLayerRow& row : QUESTIONS) {
        const XConfiguration* const file = FileOf(row.layer);
        if (file && file->GetOptionNameSet(names, sectionFormat)) isFound = true;
    }
    return isFound;
}

std::vector<OptionPlace> XOptionSources::AskEach(const CString& section, const CString& key, bool withFiles) const {
    std::vector<OptionPlace> places;
    for (const OptionLayerRow& row : OPTION_SOURCES) {
        const bool isLeftOut = (row.isFile && !withFiles) || (row.isRootOnly && !IsRootSection(section));
        CString value;
        if (Has(row) && !isLeftOut) AskNoting(row.layer, value, section, key, /*assignEmpty*/ false, &places);
    }
    Complete(places);
    return places;
}

std::vector<OptionPlace> XOptionSources::PlacesIn(const XOptionFamily& family, const CString& section,
                                                  const CString& pattern, int index) const {
    std::vector<OptionPlace> places;
    const auto [first, last] = family.places.equal_range(index);
    for (const OptionLayerRow& row : OPTION_SOURCES) {
        if (!FileOf(row.layer)) continue;
        const auto found =
            std::find_if(first, last, [&](const auto& place) { return place.second.layer == row.layer; });
        places.push_back(found != last ? OptionPlace{found->second, true}
                                       : PlaceOf(row.layer, FormatIndex(section, index), pattern));
    }
    return places;
}

// Where an answer of a layer would be.
OptionPlace XOptionSources::PlaceOf(OptionLayer layer, const CString& section, const CString& key) const {
    SourcePlace place{{}, 0, section, key, {}};
    if (const XConfiguration* const file = FileOf(layer)) place.file = file->GetFileName();
    if (layer == OptionLayer::Registry) place = {GetRegistryFile(), 0, registry->KeyPath(section), key, {}};
    if (layer == OptionLayer::Environment) place.section.Empty();
    return {{place, layer}, false};
}

}  // namespace veltrane::detail
