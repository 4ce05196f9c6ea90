#pragma once

#include <optional>
#include <string>

#include "veltrane/options/xoptiondefinition.h"

namespace veltrane::config {

/// An option that a command asks for: "logfile", "map-file[1]".
struct AskedOption {
    const XOptionDefinition* row;
    std::optional<int> index;
};

/// @throws Refusal  there is no such option
AskedOption ParseOption(const std::string& word);

/// The option that may have been meant; empty when none is near.
CString NearestOption(const CString& name);

/// Whether a row names naming rules, which the files give without items.
bool IsRule(const XOptionDefinition& row);

/// "map-file[1]"; the bare name of a single option, and of another without an index (-1).
CString LabelOf(const XOptionDefinition& row, int index);

}  // namespace veltrane::config
