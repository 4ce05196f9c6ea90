#pragma once

#include <nlohmann/json_fwd.hpp>

namespace veltrane::config {

// Only declared; sources that create JSON include answer.h or nlohmann/json.hpp.

/// What a command answers.
using Json = nlohmann::ordered_json;

/// What client and server of the editor say. Its objects are searched by binary search: a client's can have a million
/// members.
using LspJson = nlohmann::json;

}  // namespace veltrane::config
