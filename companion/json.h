#pragma once

#include <nlohmann/json_fwd.hpp>

namespace veltrane::config {

/// Only declared; sources that create JSON include answer.h.
using Json = nlohmann::ordered_json;

}  // namespace veltrane::config
