#pragma once

#include <cerrno>
#include <string>

namespace veltrane::detail {

/// Whether the name may still exist in another spelling, perhaps a shorter one, after this error of the system.
inline bool IsMissing(int error) noexcept {
    return error == ENOENT || error == ENAMETOOLONG;
}

/// Whether the system knows an entry of that name, a dangling link included; errno says why not.
bool IsEntry(const std::string& name) noexcept;

/// MapPath for a spelled path that the system has just not found.
std::string MapMissingPath(const std::string& spelled);

}  // namespace veltrane::detail
