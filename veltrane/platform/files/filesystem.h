#pragma once

#include <string>

#include "veltrane/platform/text/cstring.h"

/// Creates one folder, mode 0777 less the umask. @return false when anything of that name exists, the parent is missing
/// or there is no right; nothing is created on the way
/// @param security  ignored; for callers written for another system
[[nodiscard]] VELTRANE_API bool CreateDirectoryW(const CString& path, const void* security = nullptr);

namespace veltrane {

/// Sets the folder that a drive letter stands for; an empty folder removes the drive. The first drives come from the
/// environment variable VORNAK_DRIVES ("C=/srv/c;D=/data"). A drive without a folder does not exist.
VELTRANE_API void SetDriveFolder(wchar_t drive, const CString& folder);

/// The current folder as the system names it; a backslash in it is a character. Empty when it no longer has a name.
[[nodiscard]] VELTRANE_API CString CurrentFolder();

/// The system's name of a wide path: separators turned, drive replaced by its folder, each component as spelled if it
/// exists, else the entry that differs in case only (the first in byte order). What matches nothing stays as spelled.
/// Below a drive ".." stops at its folder.
/// @return empty for a path that cannot exist: empty, with a NUL, or on a drive without a folder
[[nodiscard]] VELTRANE_API std::string MapPath(const CString& path);

/// The name that MapPath starts from: separators turned and drive replaced, without reading any folder. Opening it
/// first, and calling MapPath only when it is not found, saves system calls.
[[nodiscard]] VELTRANE_API std::string SpelledPath(CStringView path);

}  // namespace veltrane
