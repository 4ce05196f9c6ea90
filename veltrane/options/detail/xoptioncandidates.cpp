#include "veltrane/options/detail/xoptioncandidates.h"

#include <algorithm>
#include <utility>

namespace veltrane::detail {

namespace {

// The value in force may be that of a source itself.
void AddSource(std::vector<OptionOrigin>& known, const OptionOrigin& origin) {
    if (std::ranges::find(known, origin.layer, &OptionOrigin::layer) == known.end()) known.push_back(origin);
}

}  // namespace

// A source that start-up has read a folder from is asked again, as the others are.
OptionCandidates GivenCandidates(const std::vector<XKeptOrigin>& values) {
    OptionCandidates found;
    for (auto value = values.rbegin(); value != values.rend(); ++value) {
        if (value == values.rbegin() || !IsSource(value->origin.layer)) found.candidates.push_back(value->origin);
    }
    return found;
}

// An empty text of the registry hides the files, but not the environment.
void AddSources(OptionCandidates& found, std::vector<OptionPlace> places, bool isEnvironmentEarly) {
    auto environment = std::ranges::find(places, OptionLayer::Environment, &OptionPlace::layer);
    if (isEnvironmentEarly && environment != places.end()) {
        const auto file = std::ranges::find_if(places.begin(), environment, IsFile, &OptionPlace::layer);
        std::rotate(file, environment, environment + 1);
        environment = file;
    }
    const auto first = std::ranges::find(places, true, &OptionPlace::found);
    const bool isHiding = first != places.end() && first->text.IsEmpty();
    if (isHiding && environment != places.end() && environment->found) AddSource(found.candidates, *environment);
    for (const OptionPlace& place : places) {
        if (place.found) AddSource(found.candidates, place);
    }
    found.places = std::move(places);
}

}  // namespace veltrane::detail
