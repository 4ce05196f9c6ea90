#pragma once

#include <cerrno>
#include <string>

namespace veltrane::detail {

/// Whether an error of the system leaves it open that the name exists in another spelling, which can be a shorter one.
inline bool IsMissing(int error) noexcept {
    return error == ENOENT || error == ENAMETOOLONG;
}

/// Whether the system knows an entry of that name, a dangling link included; errno tells why not.
bool IsEntry(const std::string& name) noexcept;

/// MapPath for a spelled path that the system has just not found.
std::string MapMissingPath(const std::string& spelled);

}  // namespace veltrane::detail
