#include "platform/encoding.h"

#include <cstdint>

#include "platform/detail/utf8.h"

namespace {

// Appends the ASCII characters that a text begins with, nearly always all of it. @return how many they are
std::size_t AppendAscii(std::string& out, std::wstring_view text) {
    constexpr std::size_t blockSize = 16;  // a fixed count, so that the compiler works on whole registers
    const std::size_t begin = out.size();
    out.resize(begin + text.size());
    char* const bytes = out.data() + begin;
    std::size_t count = 0;
    for (; count + blockSize <= text.size(); count += blockSize) {
        const wchar_t* const block = text.data() + count;
        std::uint32_t all = 0;
        for (std::size_t i = 0; i < blockSize; ++i) all |= static_cast<std::uint32_t>(block[i]);
        if (all >= 0x80) break;
        for (std::size_t i = 0; i < blockSize; ++i) bytes[count + i] = static_cast<char>(block[i]);
    }
    for (; count < text.size() && static_cast<std::uint32_t>(text[count]) < 0x80; ++count) {
        bytes[count] = static_cast<char>(text[count]);
    }
    out.resize(begin + count);
    return count;
}

}  // namespace

void AppendUtf8(std::string& out, std::wstring_view text) {
    if (text.empty()) return;
    text.remove_prefix(AppendAscii(out, text));
    for (const wchar_t element : text) {
        const auto codePoint = static_cast<char32_t>(element);
        if (codePoint >= 0xDC80 && codePoint <= 0xDCFF) {
            out += static_cast<char>(codePoint - 0xDC00);
        } else {
            AppendUtf8(out, codePoint <= 0x10FFFF ? codePoint : U'\xFFFD');
        }
    }
}

std::string ToUtf8(CStringView text) {
    std::string bytes;
    AppendUtf8(bytes, text.View());
    return bytes;
}

CString FromUtf8(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const auto [element, length] = ReadElement(bytes);
        text += element;
        bytes.remove_prefix(length);
    }
    return CString{std::move(text)};
}
