#pragma once

#include <vector>

#include "veltrane/options/detail/xoptionorigins.h"

namespace veltrane::detail {

/// The candidates for one value that the store was given, the newest first.
/// @param values  those of the item, the newest last
OptionCandidates GivenCandidates(const std::vector<XKeptOrigin>& values);

/// Adds what the sources hold now.
/// @param places  the strongest first, the environment last
/// @param isEnvironmentEarly  whether the environment is asked before a file is open: it then comes before the files
void AddSources(OptionCandidates& found, std::vector<OptionPlace> places, bool isEnvironmentEarly);

}  // namespace veltrane::detail
