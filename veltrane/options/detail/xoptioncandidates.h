#pragma once

#include <utility>
#include <vector>

#include "veltrane/options/detail/xoptionorigins.h"
#include "veltrane/options/detail/xoptionsources.h"

namespace veltrane::detail {

/// Puts together what there is for one value: first what the store has had, the newest in front, then what the sources
/// say as if that had not been given.
class XOptionCandidates {
public:
    /// @param values  those of the item, the newest last
    explicit XOptionCandidates(const std::vector<XKeptOrigin>& values);

    /// @param places  the strongest first, the environment last
    /// @param isEnvironmentEarly  whether the environment is asked before a file is open: it then counts before the
    /// files
    void AddSources(std::vector<OptionPlace> places, bool isEnvironmentEarly);
    /// Tells places whose answers count for nothing.
    void AddPlaces(std::vector<OptionPlace> places) { m_Result.places = std::move(places); }

    OptionCandidates Release() { return std::move(m_Result); }

private:
    void AddSource(const OptionOrigin& origin);

    OptionCandidates m_Result;
};

}  // namespace veltrane::detail
