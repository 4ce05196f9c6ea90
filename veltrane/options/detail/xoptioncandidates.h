#pragma once

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

    /// @param places   the strongest first
    /// @param isEarly  whether start-up asks before a file is open: the environment then counts before the files
    void AddSources(std::vector<OptionPlace> places, bool isEarly);

    OptionCandidates Take() { return std::move(m_Result); }

private:
    void AddSource(const OptionOrigin& origin);

    OptionCandidates m_Result;
};

}  // namespace veltrane::detail
