#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace veltrane::config {

/// The path that a URI names; nothing for one that names no file of this machine by its whole path.
std::optional<std::string> PathOfUri(std::string_view uri);

std::string UriOfPath(std::string_view path);

}  // namespace veltrane::config
