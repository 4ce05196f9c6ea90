#include "platform/encoding.h"

#include <cstdint>

#include "platform/detail/utf8.h"

std::string ToUtf8(const CString& text) {
    return ToUtf8(text.View());
}

std::string ToUtf8(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t element : text) {
        const auto codePoint = static_cast<std::uint32_t>(element);
        if (codePoint >= 0xDC80 && codePoint <= 0xDCFF) {
            bytes += static_cast<char>(codePoint - 0xDC00);
        } else {
            AppendUtf8(bytes, codePoint <= 0x10FFFF ? codePoint : U'\xFFFD');
        }
    }
    return bytes;
}

CString FromUtf8(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const auto [codePoint, length] = ReadUtf8(bytes);
        const auto byte = static_cast<std::uint8_t>(bytes[0]);
        text += static_cast<wchar_t>(length != 0 ? codePoint : 0xDC00 + byte);
        bytes.remove_prefix(length != 0 ? length : 1);
    }
    return CString{std::move(text)};
}
