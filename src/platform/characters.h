#pragma once

#include "platform/cstring.h"

/// Simple lower case of one element, the case folding of every name here. Never the locale of the process.
VELTRANE_API wchar_t FoldCharacter(wchar_t element) noexcept;
/// Simple upper case of one element; without one (ß) the element itself.
VELTRANE_API wchar_t UpperCharacter(wchar_t element) noexcept;
/// White space of texts: the blanks and line ends of Unicode, no-break space included, zero-width ones not.
VELTRANE_API bool IsWhiteSpace(wchar_t element) noexcept;

/// The number that a text begins with: white space, optional sign, ASCII digits up to the first other character. No
/// digits give 0; a number outside int gives INT_MIN or INT_MAX.
VELTRANE_API int _wtoi(CStringView text) noexcept;  // NOLINT(bugprone-reserved-identifier): the name hosts call

/// Reads the number of _wtoi at the front of a text. @return false, with number untouched, when there are no digits
VELTRANE_API bool ScanInteger(std::wstring_view text, int& number) noexcept;
