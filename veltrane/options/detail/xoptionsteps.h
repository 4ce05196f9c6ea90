#pragma once

#include <vector>

#include "veltrane/options/detail/xoptionorigins.h"

namespace veltrane::detail {

/// The steps from the text of a value to the value: its references are replaced once more, with the answers that are
/// kept, up to the place where the retrieval ended in an error.
/// @param key  by which the value was retrieved; empty for one that was given
std::vector<OptionStep> StepsOf(const XKeptOrigin& kept, const CString& key = {});

/// The steps of an item: those of what was given and, where start-up put it below a folder, that step.
/// @param values  at least one, the newest last
std::vector<OptionStep> StepsOf(const std::vector<XKeptOrigin>& values);

}  // namespace veltrane::detail
