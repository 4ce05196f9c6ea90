#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace veltrane::config {

/// The path that a URI names; nothing for one that is not the full path of a file of this machine.
std::optional<std::string> PathOfUri(std::string_view uri);

std::string UriOfPath(std::string_view path);

}  // namespace veltrane::config
