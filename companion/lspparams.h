#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "json.h"
#include "lsptext.h"

// Parts of messages that occur in many of them. Reading a part of another type throws an exception of JSON.

namespace veltrane::config {

/// The URI of the document that a message is about.
std::string UriIn(const LspJson& params);
/// A position; numbers that are too large, or below 0, count as the nearest that can be.
TextPosition PositionIn(const LspJson& json);
TextRange RangeIn(const LspJson& json);

LspJson PositionJson(const TextPosition& position);
LspJson RangeJson(const TextRange& range);

}  // namespace veltrane::config
