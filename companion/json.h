#pragma once

#include <nlohmann/json_fwd.hpp>

namespace veltrane::config {

/// Only declared: what makes some includes answer.h.
using Json = nlohmann::ordered_json;

}  // namespace veltrane::config
