#include "veltrane/options/detail/xoptionsources.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "veltrane/platform/sources/environment.h"
#include "veltrane/platform/text/indexformat.h"

namespace veltrane::detail {

namespace {

// The order of the questions, the weakest source first. The environment comes after them and overrides nothing.
constexpr OptionLayer ORDER[] = {OptionLayer::BasicFile, OptionLayer::UserFile, OptionLayer::Registry};

// What Complete makes a place of; most questions find nothing, and nobody may want to know.
OptionPlace NothingAt(OptionLayer layer, const CString& section, const CString& key) {
    return {{{{}, 0, section, key, {}}, layer}, false};
}

}  // namespace

bool IsRootSection(const CString& section) {
    return section == FindConfigSection(eSectionRoot)->szName;
}

bool XOptionSources::Has(OptionLayer layer) const {
    switch (layer) {
        case OptionLayer::BasicFile:
            return basicFile != nullptr;
        case OptionLayer::UserFile:
            return userFile != nullptr;
        case OptionLayer::Registry:
            return registry != nullptr;
        default:
            return layer == OptionLayer::Environment;
    }
}

bool XOptionSources::AskLayer(OptionLayer layer, CString& value, const CString& section, const CString& key,
                              bool assignEmpty, OptionOrigin* origin) const {
    SourcePlace place;
    SourcePlace* const wanted = origin ? &place : nullptr;
    bool isFound = false;
    if (!Has(layer)) return false;
    if (layer == OptionLayer::BasicFile) {
        isFound = basicFile->GetKeyValue(value, section, key, assignEmpty, wanted);
    } else if (layer == OptionLayer::UserFile) {
        isFound = userFile->GetKeyValue(value, section, key, /*assignEmpty*/ false, wanted);
    } else if (layer == OptionLayer::Registry) {
        isFound = registry->GetValue(value, section, key, wanted);
    } else {
        isFound = GetEnvironmentText(value, key);
        if (wanted) place = {{}, 0, {}, key, value};
    }
    if (isFound && origin) *origin = {std::move(place), layer};
    return isFound;
}

bool XOptionSources::GetKeyValue(CString& value, const CString& section, const CString& key, bool assignEmpty,
                                 OptionOrigin* origin, std::vector<OptionPlace>* places) const {
    bool isFound = false;
    if (places) places->reserve(places->size() + std::size(ORDER));
    for (const OptionLayer layer : ORDER) {
        OptionOrigin answer;
        const bool isAnswered = AskLayer(layer, value, section, key, assignEmpty, origin || places ? &answer : nullptr);
        isFound = isFound || isAnswered;
        if (places && Has(layer)) {
            places->push_back(isAnswered ? OptionPlace{answer, true} : NothingAt(layer, section, key));
        }
        if (isAnswered && origin) *origin = std::move(answer);
    }
    return isFound;
}

void XOptionSources::GetValue(CString& value, const CString& section, const CString& key, OptionOrigin* origin,
                              std::vector<OptionPlace>* places) const {
    GetKeyValue(value, section, key, /*assignEmpty*/ false, origin, places);
    if (!value.IsEmpty() || !IsRootSection(section)) return;
    AskLayer(OptionLayer::Environment, value, section, key, /*assignEmpty*/ false, origin);
    if (!places) return;
    places->push_back(NothingAt(OptionLayer::Environment, section, key));
    if (value.IsEmpty()) return;
    places->back() = {{{{}, 0, {}, key, value}, OptionLayer::Environment}, true};
}

void XOptionSources::Complete(std::vector<OptionPlace>& places) const {
    for (OptionPlace& place : places) {
        if (!place.found) place = PlaceOf(place.layer, place.section, place.key);
    }
}

// The basic file, then the user file, into the same result.
template <class Ask>
bool XOptionSources::AskFiles(Ask ask) const {
    bool isFound = false;
    if (basicFile && ask(*basicFile, OptionLayer::BasicFile)) isFound = true;
    if (userFile && ask(*userFile, OptionLayer::UserFile)) isFound = true;
    return isFound;
}

bool XOptionSources::GetKeyValueSet(XMapInt2CString& values, const CString& section, const CString& pattern,
                                    std::vector<IndexedOrigin>* origins) const {
    return AskFiles([&](const XConfiguration& file, OptionLayer layer) {
        if (!origins) return file.GetKeyValueSet(values, section, pattern);
        std::vector<IndexedPlace> places;
        const auto note = [&] {
            for (const IndexedPlace& found : places)
                origins->emplace_back(found.index, OptionOrigin{found.place, layer});
        };
        try {
            const bool isFound = file.GetKeyValueSet(values, section, pattern, &places);
            note();
            return isFound;
        } catch (const XException&) {
            note();
            throw;
        }
    });
}

XOptionFamily XOptionSources::ReadFamily(const CString& section, const CString& pattern) const {
    XOptionFamily family;
    XMapInt2CString values;
    std::vector<IndexedOrigin> origins;
    try {
        GetKeyValueSet(values, section, pattern, &origins);
    } catch (const XException& error) {  // what stands in front of the fault is told
        family.fault = error;
    }
    for (IndexedOrigin& origin : origins) family.places.insert(std::move(origin));
    return family;
}

bool XOptionSources::GetOptionNameSet(XMapInt2CString& names, const CString& sectionFormat) const {
    return AskFiles(
        [&](const XConfiguration& file, OptionLayer) { return file.GetOptionNameSet(names, sectionFormat); });
}

std::vector<OptionPlace> XOptionSources::AskEach(const CString& section, const CString& key, bool withFiles) const {
    std::vector<OptionPlace> places;
    for (const OptionLayer layer : ORDER) {
        if (!Has(layer) || (layer != OptionLayer::Registry && !withFiles)) continue;
        places.insert(places.begin(), AskAlone(layer, section, key));
    }
    if (IsRootSection(section)) places.push_back(AskAlone(OptionLayer::Environment, section, key));
    return places;
}

std::vector<OptionPlace> XOptionSources::PlacesIn(const XOptionFamily& family, const CString& section,
                                                  const CString& pattern, int index) const {
    std::vector<OptionPlace> places;
    const auto [first, last] = family.places.equal_range(index);
    for (const OptionLayer layer : {OptionLayer::UserFile, OptionLayer::BasicFile}) {
        if (!Has(layer)) continue;
        const auto found = std::find_if(first, last, [&](const auto& place) { return place.second.layer == layer; });
        places.push_back(found != last ? OptionPlace{found->second, true}
                                       : PlaceOf(layer, FormatIndex(section, index), pattern));
    }
    return places;
}

OptionPlace XOptionSources::AskAlone(OptionLayer layer, const CString& section, const CString& key) const {
    CString value;
    OptionOrigin origin;
    const bool isFound = AskLayer(layer, value, section, key, /*assignEmpty*/ false, &origin);
    const bool counts = isFound && (layer != OptionLayer::Environment || !value.IsEmpty());
    return counts ? OptionPlace{origin, true} : PlaceOf(layer, section, key);
}

// Where an answer of a layer would stand.
OptionPlace XOptionSources::PlaceOf(OptionLayer layer, const CString& section, const CString& key) const {
    SourcePlace place{{}, 0, section, key, {}};
    if (layer == OptionLayer::UserFile) place.file = userFile->GetFileName();
    if (layer == OptionLayer::BasicFile) place.file = basicFile->GetFileName();
    if (layer == OptionLayer::Registry) place = {GetRegistryFile(), 0, registry->KeyPath(section), key, {}};
    if (layer == OptionLayer::Environment) place.section.Empty();
    return {{place, layer}, false};
}

}  // namespace veltrane::detail
