#pragma once

#include "veltrane/platform/export.h"

/// Asks a profile file (INI file) for a value or a list of names. The file is read again for each question and never
/// written; one that is missing or cannot be read counts as empty.
/// @param section      name in any case, blanks at its ends ignored; of several sections with the name the first
///                     answers. Null: the names of all sections are listed
/// @param key          likewise, within the section. Null: the names of all keys of the section are listed
/// @param defaultText  the value where there is no such key, its trailing blanks removed; null is empty
/// @param buffer       receives the value and a NUL, or each name with a NUL and one NUL more; what does not fit is cut
/// @param capacity     size of the buffer in elements, terminators included; with 0 nothing is written
/// @return  elements written, without the final NUL; capacity - 1 when a value is cut, capacity - 2 when a list is
/// @code
/// wchar_t buffer[2048];
/// GetPrivateProfileStringW(L"ROOT", L"logfile", L"", buffer, 2048, L"D:\\config\\tool.ini");
/// @endcode
VELTRANE_API unsigned GetPrivateProfileStringW(const wchar_t* section, const wchar_t* key, const wchar_t* defaultText,
                                               wchar_t* buffer, unsigned capacity, const wchar_t* fileName);
