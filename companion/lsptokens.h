#pragma once

#include <nlohmann/json.hpp>

#include "lspjson.h"

namespace veltrane::config {

/// The kinds of tokens and their marks, in the order of their numbers.
LspJson TokenLegend();

}  // namespace veltrane::config
