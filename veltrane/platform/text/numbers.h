#pragma once

#include "veltrane/platform/text/cstring.h"

/// The number that a text begins with: white space, optional sign, ASCII digits up to the first other character. No
/// digits give 0; a number outside int gives INT_MIN or INT_MAX.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name that hosts call
VELTRANE_API int _wtoi(veltrane::CStringView text) noexcept;

namespace veltrane {

/// Reads the number of _wtoi at the front of a text. @return false, with number untouched, when there are no digits
VELTRANE_API bool ScanInteger(std::wstring_view text, int& number) noexcept;

namespace detail {

/// Whether a text holds ASCII digits and nothing else.
inline bool IsNumber(CStringView text) noexcept {
    const std::wstring_view view = text.View();
    return !view.empty() && view.find_first_not_of(L"0123456789") == view.npos;
}

/// Appends a number from 0 to 99 in two digits.
inline void AppendTwoDigits(std::wstring& text, int number) {
    text += static_cast<wchar_t>(L'0' + number / 10);
    text += static_cast<wchar_t>(L'0' + number % 10);
}

}  // namespace detail

}  // namespace veltrane
