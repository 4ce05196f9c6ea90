#include "veltrane/platform/process/localtime.h"

#include <clocale>
#include <ctime>

#include "support/support.h"

namespace {

TEST(LocalTime, WritesTheTimeOfTheZone) {
    constexpr const wchar_t* full = L"%A, %B %d, %Y ; %H:%M:%S";
    const std::tuple<const char*, std::int64_t, const wchar_t*> cases[] = {
        {"UTC0", 1794931875, L"Tuesday, November 17, 2026 ; 16:11:15"},
        {"UTC0", -1, L"Wednesday, December 31, 1969 ; 23:59:59"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", 1782000000, L"Sunday, June 21, 2026 ; 02:00:00"},
        {"UTC0", 253402300800, L"Saturday, January 01, 10000 ; 00:00:00"},
        {"UTC0", -62135596801, L"Sunday, December 31, 0000 ; 23:59:59"},
        {"UTC0", INT64_MAX, L""},
        {"UTC0", INT64_MIN, L""},
        {"no zone at all, but a name that is far too long to be one", 0, L"Thursday, January 01, 1970 ; 00:00:00"},
    };
    std::setlocale(LC_ALL, "de_DE.UTF-8");  // where the machine has it: the names are English all the same
    for (const auto& [zone, seconds, text] : cases) {
        const EnvironmentGuard guard{"TZ", zone};
        EXPECT_EQ(LocalTimeText(full, seconds), text) << zone;
    }
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(LocalTimeText(L"100%%Y %n%s%a %", 86400), L"100%1970 %n%s%a %") << "other text stays";
}

TEST(LocalTime, FollowsAChangeOfTheZone) {
    constexpr std::int64_t second = 1794931875;
    for (int round = 0; round < 2; ++round) {
        const EnvironmentGuard west{"TZ", "EST5"};
        EXPECT_EQ(LocalTimeText(L"%H", second), L"11");
        const EnvironmentGuard east{"TZ", "CET-1"};
        EXPECT_EQ(LocalTimeText(L"%H", second), L"17");
        EXPECT_EQ(LocalTimeText(L"%S", second + 1), L"16");
        const EnvironmentGuard utc{"TZ", ""};
        EXPECT_EQ(LocalTimeText(L"%H", second + 1), L"16");
    }
}

TEST(LocalTime, KnowsTheTimeNow) {
    const std::time_t before = std::time(nullptr);
    const std::int64_t now = CurrentTime();
    EXPECT_TRUE(before <= now && now <= std::time(nullptr)) << now;
}

}  // namespace
