#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace veltrane::config {

/// The path that a URI names; nothing for one that is not the full path of a file of this machine.
std::optional<std::string> PathOfUri(std::string_view uri);

std::string UriOfPath(std::string_view path);

/// A path as a URI holds it.
std::string PathInUri(std::string_view path);

/// A text in which each byte of a kind is replaced by a percent sign and its number.
std::string PercentEncoded(std::string_view text, bool (*isEncoded)(char byte));

}  // namespace veltrane::config
