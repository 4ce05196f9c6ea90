#pragma once

#include <nlohmann/json_fwd.hpp>

namespace veltrane::config {

/// What client and server say. Its objects are searched by binary search: a client's can have a million members.
using LspJson = nlohmann::json;

}  // namespace veltrane::config
