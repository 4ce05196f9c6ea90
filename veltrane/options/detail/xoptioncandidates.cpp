#include "veltrane/options/detail/xoptioncandidates.h"

#include <algorithm>
#include <utility>

namespace veltrane::detail {

// A source that start-up has read a folder from is asked again, as the others are.
XOptionCandidates::XOptionCandidates(const std::vector<XKeptOrigin>& values) {
    for (auto value = values.rbegin(); value != values.rend(); ++value) {
        if (value == values.rbegin() || !IsSource(value->origin.layer)) m_Result.candidates.push_back(value->origin);
    }
}

// An empty text of the registry hides the files, but not the environment.
void XOptionCandidates::AddSources(std::vector<OptionPlace> places, bool isEnvironmentEarly) {
    auto environment = std::ranges::find(places, OptionLayer::Environment, &OptionPlace::layer);
    if (isEnvironmentEarly && environment != places.end()) {
        const auto file = std::ranges::find_if(places.begin(), environment, IsFile, &OptionPlace::layer);
        std::rotate(file, environment, environment + 1);
        environment = file;
    }
    const auto first = std::ranges::find(places, true, &OptionPlace::found);
    const bool isHiding = first != places.end() && first->text.IsEmpty();
    if (isHiding && environment != places.end() && environment->found) AddSource(*environment);
    for (const OptionPlace& place : places) {
        if (place.found) AddSource(place);
    }
    AddPlaces(std::move(places));
}

// The value in force may be that of a source itself.
void XOptionCandidates::AddSource(const OptionOrigin& origin) {
    const auto& known = m_Result.candidates;
    if (std::ranges::find(known, origin.layer, &OptionOrigin::layer) == known.end()) {
        m_Result.candidates.push_back(origin);
    }
}

}  // namespace veltrane::detail
