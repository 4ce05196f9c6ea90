#include "veltrane/platform/process/localtime.h"

#include <cstdlib>
#include <ctime>
#include <string>

#include "veltrane/platform/text/numbers.h"

namespace veltrane {

using namespace detail;

namespace {

constexpr const wchar_t* DAYS[] = {L"Sunday", L"Monday", L"Tuesday", L"Wednesday", L"Thursday", L"Friday", L"Saturday"};
constexpr const wchar_t* MONTHS[] = {L"January", L"February", L"March",     L"April",   L"May",      L"June",
                                     L"July",    L"August",   L"September", L"October", L"November", L"December"};

/// @return false for an unknown letter
bool AppendField(std::wstring& text, wchar_t letter, const std::tm& time) {
    const std::size_t before = text.size();
    if (letter == L'A') text += DAYS[time.tm_wday];
    if (letter == L'B') text += MONTHS[time.tm_mon];
    if (letter == L'd') AppendTwoDigits(text, time.tm_mday);
    if (letter == L'H') AppendTwoDigits(text, time.tm_hour);
    if (letter == L'M') AppendTwoDigits(text, time.tm_min);
    if (letter == L'S') AppendTwoDigits(text, time.tm_sec);
    if (letter == L'Y') text += FormatText(L"%04d", std::int64_t{time.tm_year} + 1900);
    return text.size() > before;
}

}  // namespace

std::int64_t CurrentTime() {
    return std::time(nullptr);
}

CString LocalTimeText(CStringView pattern, std::int64_t secondsSinceEpoch) {
    const std::time_t seconds = secondsSinceEpoch;
    std::tm time{};
    tzset();  // localtime_r alone may ignore TZ
    if (!localtime_r(&seconds, &time)) return {};
    std::wstring text;
    for (std::wstring_view rest = pattern.View(); !rest.empty(); rest.remove_prefix(1)) {
        if (rest.size() > 1 && rest[0] == L'%' && AppendField(text, rest[1], time)) {
            rest.remove_prefix(1);
        } else {
            text += rest[0];
        }
    }
    return text;
}

bool TimeStamp::Update() {
    const std::int64_t now = CurrentTime();
    const char* const variable = std::getenv("TZ");
    const bool isSameZone = variable ? m_Zone == variable : !m_Zone;
    if (now == m_nSecond && isSameZone) return false;
    m_Text = LocalTimeText(m_Pattern, now);
    m_Zone = variable ? std::optional<std::string>{variable} : std::nullopt;
    m_nSecond = now;
    return true;
}

}  // namespace veltrane
