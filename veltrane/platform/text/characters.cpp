#include "veltrane/platform/text/characters.h"

#include <locale.h>
#include <clocale>
#include <cwctype>
#include <string_view>

namespace veltrane {

namespace {

// Created for the first character outside ASCII and kept: most runs never need it.
locale_t FoldingLocale() noexcept {
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

}  // namespace

wchar_t FoldBeyondAscii(wchar_t element) noexcept {
    const locale_t locale = FoldingLocale();
    return locale ? static_cast<wchar_t>(towlower_l(static_cast<wint_t>(element), locale)) : element;
}

wchar_t UpperBeyondAscii(wchar_t element) noexcept {
    const locale_t locale = FoldingLocale();
    return locale ? static_cast<wchar_t>(towupper_l(static_cast<wint_t>(element), locale)) : element;
}

bool IsWhiteSpace(wchar_t element) noexcept {
    if (IsAscii(element)) return element == L' ' || (element >= L'\t' && element <= L'\r');
    constexpr std::wstring_view others = L"\x85\xA0\x1680\x2028\x2029\x202F\x205F\x3000";
    return (element >= 0x2000 && element <= 0x200A) || others.find(element) != others.npos;
}

}  // namespace veltrane
