#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "veltrane/platform/text/internal/utf16.h"

namespace veltrane::detail {

/// One code point read from the front of UTF-8 bytes; length 0 when they start with no valid sequence.
struct Utf8Sequence {
    char32_t codePoint = 0;
    std::size_t length = 0;
};

/// Reads strictly: no overlong form, no surrogate (unless wanted, as a text kept from UTF-16 has them), at most
/// U+10FFFF.
inline Utf8Sequence ReadUtf8(std::string_view bytes, bool withSurrogates = false) noexcept {
    struct Lead {
        std::uint8_t mask, bits, length;
        char32_t least;  // a smaller code point would have a shorter form
    };
    static constexpr Lead leads[] = {
        {0x80, 0x00, 1, 0}, {0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}};
    if (bytes.empty()) return {};
    const auto first = static_cast<std::uint8_t>(bytes[0]);
    for (const Lead& lead : leads) {
        if ((first & lead.mask) != lead.bits) continue;
        if (bytes.size() < lead.length) return {};
        char32_t codePoint = first & static_cast<std::uint8_t>(~lead.mask);
        for (std::size_t i = 1; i < lead.length; ++i) {
            const auto next = static_cast<std::uint8_t>(bytes[i]);
            if ((next & 0xC0) != 0x80) return {};
            codePoint = codePoint << 6 | (next & 0x3F);
        }
        if (codePoint < lead.least || codePoint > 0x10FFFF) return {};
        if (IsSurrogate(codePoint) && !withSurrogates) return {};
        return {codePoint, lead.length};
    }
    return {};
}

/// One element of wide text read from the front of UTF-8 bytes that are not empty; a byte that starts no valid sequence
/// gives U+DC00 + byte.
struct Utf8Element {
    wchar_t element = 0;
    std::size_t length = 1;
};

inline Utf8Element ReadElement(std::string_view bytes) noexcept {
    const auto first = static_cast<std::uint8_t>(bytes[0]);
    if (first < 0x80) return {first, 1};
    const auto [codePoint, length] = ReadUtf8(bytes);
    if (length == 0) return {static_cast<wchar_t>(0xDC00 + first), 1};
    return {static_cast<wchar_t>(codePoint), length};
}

/// Appends the UTF-8 of one code point, of every lone surrogate in three bytes.
inline void AppendCodePoint(std::string& out, char32_t codePoint) {
    const auto trail = [codePoint](int shift) { return static_cast<char>(0x80 | (codePoint >> shift & 0x3F)); };
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += {static_cast<char>(0xC0 | codePoint >> 6), trail(0)};
    } else if (codePoint < 0x10000) {
        out += {static_cast<char>(0xE0 | codePoint >> 12), trail(6), trail(0)};
    } else {
        out += {static_cast<char>(0xF0 | codePoint >> 18), trail(12), trail(6), trail(0)};
    }
}

/// Appends wide text as ToUtf8 writes it, U+DC80..U+DCFF as the bytes that they stand for; a buffer that is used again
/// spares the allocation.
void AppendUtf8(std::string& out, std::wstring_view text);

}  // namespace veltrane::detail
