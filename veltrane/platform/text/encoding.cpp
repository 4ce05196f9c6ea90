#include "veltrane/platform/text/encoding.h"

#include <cstdint>

#include "veltrane/platform/text/internal/utf8.h"

namespace veltrane {

using namespace detail;

namespace {

/// One plain pass, which compilers vectorize. @return false, with nothing appended, for a text that is not all ASCII
bool AppendAscii(std::string& out, std::wstring_view text) {
    const std::size_t begin = out.size();
    out.resize(begin + text.size());
    char* const bytes = out.data() + begin;
    std::uint32_t all = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bytes[i] = static_cast<char>(text[i]);
        all |= static_cast<std::uint32_t>(text[i]);
    }
    if (all >= 0x80) out.resize(begin);
    return all < 0x80;
}

}  // namespace

void detail::AppendUtf8(std::string& out, std::wstring_view text) {
    if (AppendAscii(out, text)) return;
    for (const wchar_t element : text) {
        const auto codePoint = static_cast<std::uint32_t>(element);
        if (codePoint >= 0xDC80 && codePoint <= 0xDCFF) {
            out += static_cast<char>(codePoint - 0xDC00);
        } else {
            AppendCodePoint(out, codePoint <= 0x10FFFF ? codePoint : U'\xFFFD');
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

}  // namespace veltrane
