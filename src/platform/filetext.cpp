#include <cstdint>

#include "platform/detail/filetext.h"
#include "platform/detail/utf8.h"
#include "platform/detail/windows1252.h"

std::wstring DecodeFileText(std::string_view bytes, bool withSurrogates) {
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const auto [codePoint, length] = ReadUtf8(bytes, withSurrogates);
        text += length != 0 ? static_cast<wchar_t>(codePoint) : FromWindows1252(static_cast<std::uint8_t>(bytes[0]));
        bytes.remove_prefix(length != 0 ? length : 1);
    }
    return text;
}
