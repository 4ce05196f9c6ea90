#pragma once

#include "veltrane/platform/text/cstring.h"

// Paths of hosts: '\' and '/' both separate folders; a path without a separator gets '\'.

/// Whether a path holds a ':' or begins with '/'.
[[nodiscard]] VELTRANE_API bool IsAbsolutePath(const CString& path);

/// Whether a file or folder exists.
[[nodiscard]] VELTRANE_API bool FileExists(const CString& path);
[[nodiscard]] VELTRANE_API bool FileExists(const CString& path, const CString& name);

/// Splits at the last separator, which belongs to neither part; without one, folder is empty and name the whole.
VELTRANE_API void SplitFileName(CString& folder, CString& name, CString fullName);

/// Folder and name joined by one separator, the one that path already uses; name alone when it begins with a drive or
/// path is empty. Separators at both sides of the joint stay.
[[nodiscard]] VELTRANE_API CString BuildFileName(const CString& path, const CString& name);

/// The last component, also of a path that ends in a separator.
[[nodiscard]] VELTRANE_API CString GetFileName(const CString& path);
/// The text before the last '.' of the whole text, folders included; the whole text without one.
[[nodiscard]] VELTRANE_API CString GetFileNameBase(const CString& name);
/// The last '.' and what follows; the whole text without one.
[[nodiscard]] VELTRANE_API CString GetFileNameExtension(const CString& name);
/// The folder of a path; a path that ends in a separator is a folder and loses only that.
[[nodiscard]] VELTRANE_API CString GetPath(const CString& path);
