#pragma once

#include "veltrane/platform/sources/winreg.h"

namespace veltrane::detail {

/// GetPrivateProfileStringW that also gives the line of the file that holds the answer, from 1; 0 for a list and for
/// what was not found.
VELTRANE_API unsigned GetProfileStringAndLine(const wchar_t* section, const wchar_t* key, const wchar_t* defaultText,
                                              wchar_t* buffer, unsigned capacity, const wchar_t* fileName, int& line);

/// Line, from 1, on which a value of an open key begins, and the file of the key; 0 when there is no such value.
VELTRANE_API int FindRegistryLine(HKEY key, const wchar_t* name, CString& file);

}  // namespace veltrane::detail
