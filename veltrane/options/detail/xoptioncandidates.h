#pragma once

#include <utility>
#include <vector>

#include "veltrane/options/detail/xoptionorigins.h"
#include "veltrane/options/detail/xoptionsources.h"

namespace veltrane::detail {

/// Collects the candidates for one value: first what the store was given, newest first; then what the sources hold now.
class XOptionCandidates {
public:
    /// @param values  those of the item, the newest last
    explicit XOptionCandidates(const std::vector<XKeptOrigin>& values);

    /// @param places  the strongest first, the environment last
    /// @param isEnvironmentEarly  whether the environment is asked before a file is open: it then comes before the
    /// files
    void AddSources(std::vector<OptionPlace> places, bool isEnvironmentEarly);
    /// Sets places whose answers are not candidates.
    void AddPlaces(std::vector<OptionPlace> places) { m_Result.places = std::move(places); }

    OptionCandidates Release() { return std::move(m_Result); }

private:
    void AddSource(const OptionOrigin& origin);

    OptionCandidates m_Result;
};

}  // namespace veltrane::detail
