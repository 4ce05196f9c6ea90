#pragma once

#include <algorithm>
#include <climits>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/encoding.h"
#include "veltrane/platform/text/internal/utf16.h"
#include "veltrane/platform/text/internal/windows1252.h"

// The plainest way to do what the readers of files do to texts, to compare with.

using Text = std::wstring;

/// The text of a configuration file.
inline Text Decoded(std::string_view file) {
    using namespace veltrane;
    using namespace veltrane::detail;
    Text text;
    if (file.starts_with("\xFF\xFE") || file.starts_with("\xFE\xFF")) {
        const auto order = file[0] == '\xFF' ? Utf16Order::LittleEndian : Utf16Order::BigEndian;
        for (Utf16Reader reader{file.substr(2), order}; reader.More();) text += static_cast<wchar_t>(reader.Next());
        return text;
    }
    if (file.starts_with("\xEF\xBB\xBF")) file.remove_prefix(3);
    text = FromUtf8(file).View();
    for (wchar_t& element : text) {
        const bool isByte = element >= 0xDC80 && element <= 0xDCFF;
        if (isByte) element = FromWindows1252(static_cast<std::uint8_t>(element - 0xDC00));
    }
    return text;
}

inline Text Trimmed(const Text& text, const wchar_t* blanks = L" \t\v\f\x1A") {
    const std::size_t first = text.find_first_not_of(blanks);
    return first == text.npos ? Text{} : text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

inline Text Folded(Text text) {
    std::ranges::transform(text, text.begin(), veltrane::FoldCharacter);
    return text;
}

/// The number at a position after white space, limited to the range of int; nothing without a digit.
inline std::optional<int> NumberAt(const Text& text, std::size_t at) {
    while (at < text.size() && veltrane::IsWhiteSpace(text[at])) ++at;
    const bool isNegative = at < text.size() && text[at] == L'-';
    if (at < text.size() && (text[at] == L'-' || text[at] == L'+')) ++at;
    std::optional<std::int64_t> number;
    for (; at < text.size() && text[at] >= L'0' && text[at] <= L'9'; ++at) {
        number = std::min<std::int64_t>(number.value_or(0) * 10 + (text[at] - L'0'), std::int64_t{INT_MAX} + 1);
    }
    if (!number) return {};
    return static_cast<int>(std::clamp<std::int64_t>(isNegative ? -*number : *number, INT_MIN, INT_MAX));
}
