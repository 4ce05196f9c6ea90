#pragma once

#include <string_view>

namespace veltrane::detail {

/// A text without the elements at its front that a condition holds for.
template <class Char, class Condition>
constexpr std::basic_string_view<Char> TrimmedLeft(std::basic_string_view<Char> text, Condition isTrimmed) noexcept {
    while (!text.empty() && isTrimmed(text.front())) text.remove_prefix(1);
    return text;
}

/// As TrimmedLeft, at the end.
template <class Char, class Condition>
constexpr std::basic_string_view<Char> TrimmedRight(std::basic_string_view<Char> text, Condition isTrimmed) noexcept {
    while (!text.empty() && isTrimmed(text.back())) text.remove_suffix(1);
    return text;
}

template <class Char, class Condition>
constexpr std::basic_string_view<Char> Trimmed(std::basic_string_view<Char> text, Condition isTrimmed) noexcept {
    return TrimmedLeft(TrimmedRight(text, isTrimmed), isTrimmed);
}

}  // namespace veltrane::detail
