#include "veltrane/platform/process/localtime.h"

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

#include "veltrane/platform/text/numbers.h"

namespace veltrane {

using namespace detail;

namespace {

constexpr const wchar_t* DAYS[] = {L"Sunday", L"Monday", L"Tuesday", L"Wednesday", L"Thursday", L"Friday", L"Saturday"};
constexpr const wchar_t* MONTHS[] = {L"January", L"February", L"March",     L"April",   L"May",      L"June",
                                     L"July",    L"August",   L"September", L"October", L"November", L"December"};

struct BrokenDown {
    std::optional<std::string> zone;  // TZ; none when it is not set
    std::time_t seconds = 0;
    std::tm time{};
    bool isKnown = false;
};

/// The local date of a time, null without one. Kept for its second and its zone: a log asks for the same one again and
/// again, and where TZ is not set each tzset asks the file system for the zone.
const std::tm* LocalTime(std::time_t seconds) {
    static BrokenDown& last = *new BrokenDown;
    const char* const zone = std::getenv("TZ");
    const bool isSameZone = zone ? last.zone == zone : !last.zone;
    if (last.isKnown && isSameZone && last.seconds == seconds) return &last.time;

    last.isKnown = false;
    last.zone = zone ? std::optional<std::string>{zone} : std::nullopt;
    last.seconds = seconds;
    tzset();  // localtime_r alone need not look at TZ
    last.isKnown = localtime_r(&seconds, &last.time) != nullptr;
    return last.isKnown ? &last.time : nullptr;
}

/// @return false for a letter that stands for nothing
bool AppendField(std::wstring& text, wchar_t letter, const std::tm& time) {
    switch (letter) {
        case L'A':
            text += DAYS[time.tm_wday];
            return true;
        case L'B':
            text += MONTHS[time.tm_mon];
            return true;
        case L'd':
            AppendTwoDigits(text, time.tm_mday);
            return true;
        case L'H':
            AppendTwoDigits(text, time.tm_hour);
            return true;
        case L'M':
            AppendTwoDigits(text, time.tm_min);
            return true;
        case L'S':
            AppendTwoDigits(text, time.tm_sec);
            return true;
        case L'Y':
            text += FormatText(L"%04d", std::int64_t{time.tm_year} + 1900);
            return true;
        default:
            return false;
    }
}

}  // namespace

std::int64_t CurrentTime() {
    return std::time(nullptr);
}

CString LocalTimeText(CStringView pattern, std::int64_t secondsSinceEpoch) {
    const std::tm* const time = LocalTime(secondsSinceEpoch);
    if (!time) return {};
    std::wstring text;
    for (std::wstring_view rest = pattern.View(); !rest.empty(); rest.remove_prefix(1)) {
        if (rest.size() > 1 && rest[0] == L'%' && AppendField(text, rest[1], *time)) {
            rest.remove_prefix(1);
        } else {
            text += rest[0];
        }
    }
    return text;
}

}  // namespace veltrane
