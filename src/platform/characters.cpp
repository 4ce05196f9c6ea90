#include "platform/characters.h"

#include <locale.h>
#include <algorithm>
#include <climits>
#include <clocale>
#include <cstdint>
#include <cwctype>

namespace {

// Made on the first character outside ASCII and kept: most runs never need it.
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
    if (element >= 0x2000 && element <= 0x200A) return true;
    switch (element) {
        case 0x0085:
        case 0x00A0:
        case 0x1680:
        case 0x2028:
        case 0x2029:
        case 0x202F:
        case 0x205F:
        case 0x3000:
            return true;
        default:
            return false;
    }
}

bool ScanInteger(std::wstring_view text, int& number) noexcept {
    auto at = std::find_if_not(text.begin(), text.end(), IsWhiteSpace);
    const bool negative = at != text.end() && *at == L'-';
    if (at != text.end() && (*at == L'-' || *at == L'+')) ++at;
    const auto isDigit = [](wchar_t element) { return element >= L'0' && element <= L'9'; };
    if (at == text.end() || !isDigit(*at)) return false;

    constexpr std::int64_t beyond = std::int64_t{INT_MAX} + 1;  // the size of INT_MIN; more digits change nothing
    std::int64_t value = 0;
    for (; at != text.end() && isDigit(*at); ++at) value = std::min(beyond, value * 10 + (*at - L'0'));
    number = static_cast<int>(negative ? -value : std::min<std::int64_t>(value, INT_MAX));
    return true;
}

int _wtoi(CStringView text) noexcept {
    int number = 0;
    ScanInteger(text.View(), number);
    return number;
}
