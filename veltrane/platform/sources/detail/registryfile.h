#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// A value of a registry key, as the calls hand it out.
struct RegistryValue {
    std::uint32_t type = 0;
    std::string data;
    int line = 0;  // of the file, from 1
};

/// The values of one key by their folded names; the default value has the empty name.
using RegistryValues = std::map<CString, RegistryValue>;

/// Collects the values of one key from the text of a registry export, from top to bottom as an import would.
/// @param path  folded path of the key below the machine's root, without separators at its ends; empty is the root
/// @return false when the key does not exist at the end of the text
bool ReadRegistryKey(std::string_view text, bool withSurrogates, std::wstring_view path, RegistryValues& values);

}  // namespace veltrane::detail
