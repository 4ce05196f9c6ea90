#pragma once

#include <cstdint>

#include "veltrane/platform/text/cstring.h"

namespace veltrane {

namespace detail {

/// Lower case of an ASCII letter; every other element or byte as it is.
template <class Char>
constexpr Char LowerAscii(Char element) noexcept {
    return element >= Char{'A'} && element <= Char{'Z'} ? static_cast<Char>(element + ('a' - 'A')) : element;
}

/// Upper case of an ASCII letter; every other element or byte as it is.
template <class Char>
constexpr Char UpperAscii(Char element) noexcept {
    return element >= Char{'a'} && element <= Char{'z'} ? static_cast<Char>(element - ('a' - 'A')) : element;
}

/// The separators of a path.
inline constexpr std::wstring_view PATH_SEPARATORS = L"\\/";

constexpr bool IsPathSeparator(wchar_t element) noexcept {
    return element == L'\\' || element == L'/';
}

}  // namespace detail

constexpr bool IsAscii(wchar_t element) noexcept {
    return static_cast<std::uint32_t>(element) < 0x80;  // wchar_t has a sign on some processors only
}

/// The two functions below for elements outside ASCII; nearly every element is ASCII, for which they are inline.
VELTRANE_API wchar_t FoldBeyondAscii(wchar_t element) noexcept;
VELTRANE_API wchar_t UpperBeyondAscii(wchar_t element) noexcept;

/// Simple lower case of one element, the case folding of every name here. Never the locale of the process.
inline wchar_t FoldCharacter(wchar_t element) noexcept {
    return IsAscii(element) ? detail::LowerAscii(element) : FoldBeyondAscii(element);
}

/// Simple upper case of one element; without one (ß) the element itself.
inline wchar_t UpperCharacter(wchar_t element) noexcept {
    return IsAscii(element) ? detail::UpperAscii(element) : UpperBeyondAscii(element);
}

/// White space of texts: the blanks and line ends of Unicode, no-break space included, zero-width ones not.
VELTRANE_API bool IsWhiteSpace(wchar_t element) noexcept;

}  // namespace veltrane
