#include "veltrane/platform/text/numbers.h"

#include <algorithm>
#include <climits>
#include <cstdint>

#include "veltrane/platform/text/characters.h"

using namespace veltrane;

bool veltrane::ScanInteger(std::wstring_view text, int& number) noexcept {
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
