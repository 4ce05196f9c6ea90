#pragma once

#include "veltrane/platform/text/cstring.h"

/// The smaller of two numbers given as text when mode is exactly "MIN", else the larger; a text without a number is 0.
[[nodiscard]] VELTRANE_API int GetMinOrMax(const CString& mode, const CString& a, const CString& b);

/// Splits at the first separator, which belongs to neither part; without one, left is empty and right the whole text.
VELTRANE_API void SplitString(CString& left, CString& right, const CString& text, wchar_t separator);
/// As SplitString, at the last separator.
VELTRANE_API void SplitStringReverse(CString& left, CString& right, const CString& text, wchar_t separator);

/// Appends an item to a list separated by ", "; an empty list becomes just the item.
VELTRANE_API void AddString(CString& list, const CString& item);
/// Field of a comma-separated text, blanks kept. @param index  from 0; below 0 means 0
/// @return empty after the last field
[[nodiscard]] VELTRANE_API CString GetArgument(int index, const CString& text);

/// count tabulators; none for 0 and below.
[[nodiscard]] VELTRANE_API CString GetTabulator(int count);
/// The tabulators, of 8 characters each, from the end of text to a column; none when text is longer.
[[nodiscard]] VELTRANE_API CString GetTabulator(const CString& text, int column);
