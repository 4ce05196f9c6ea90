#pragma once

#include <cstdint>

#include "veltrane/platform/text/cstring.h"

namespace veltrane {

constexpr bool IsAscii(wchar_t element) noexcept {
    return static_cast<std::uint32_t>(element) < 0x80;  // wchar_t has a sign on some processors only
}

/// The two below for elements outside ASCII; nearly every element is ASCII and not worth a call.
VELTRANE_API wchar_t FoldBeyondAscii(wchar_t element) noexcept;
VELTRANE_API wchar_t UpperBeyondAscii(wchar_t element) noexcept;

/// Simple lower case of one element, the case folding of every name here. Never the locale of the process.
inline wchar_t FoldCharacter(wchar_t element) noexcept {
    if (!IsAscii(element)) return FoldBeyondAscii(element);
    return element >= L'A' && element <= L'Z' ? element + (L'a' - L'A') : element;
}

/// Simple upper case of one element; without one (ß) the element itself.
inline wchar_t UpperCharacter(wchar_t element) noexcept {
    if (!IsAscii(element)) return UpperBeyondAscii(element);
    return element >= L'a' && element <= L'z' ? element - (L'a' - L'A') : element;
}

/// White space of texts: the blanks and line ends of Unicode, no-break space included, zero-width ones not.
VELTRANE_API bool IsWhiteSpace(wchar_t element) noexcept;

}  // namespace veltrane
