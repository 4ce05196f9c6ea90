#include "platform/localtime.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <ctime>

#include "support/environment.h"
#include "support/support.h"

namespace {

constexpr const wchar_t* FULL = L"%A, %B %d, %Y ; %H:%M:%S";

TEST(LocalTime, WritesTheTimeOfTheZone) {
    struct {
        const char* zone;
        std::int64_t seconds;
        const wchar_t* text;
    } const cases[] = {
        {"UTC0", 0, L"Thursday, January 01, 1970 ; 00:00:00"},
        {"UTC0", 1794931875, L"Tuesday, November 17, 2026 ; 16:11:15"},
        {"UTC0", -1, L"Wednesday, December 31, 1969 ; 23:59:59"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", 1782000000, L"Sunday, June 21, 2026 ; 02:00:00"},
        {"EST5", 1772323199, L"Saturday, February 28, 2026 ; 18:59:59"},
        {"UTC0", 253402300800, L"Saturday, January 01, 10000 ; 00:00:00"},
        {"UTC0", -62135596801, L"Sunday, December 31, 0000 ; 23:59:59"},
        {"UTC0", INT64_MAX, L""},
        {"UTC0", INT64_MIN, L""},
        {"no zone at all, but a name that is far too long to be one", 0, L"Thursday, January 01, 1970 ; 00:00:00"},
    };
    for (const auto& [zone, seconds, text] : cases) {
        SCOPED_TRACE(testing::Message() << zone << ' ' << seconds);
        const EnvironmentGuard guard{"TZ", zone};
        EXPECT_EQ(LocalTimeText(FULL, seconds), text);
    }
}

TEST(LocalTime, LeavesOtherTextAsItIs) {
    const EnvironmentGuard zone{"TZ", "UTC0"};
    EXPECT_EQ(LocalTimeText(L"%H:%M:%S: ", 3661), L"01:01:01: ");
    EXPECT_EQ(LocalTimeText(L"100%%Y %n%s%a %", 0), L"100%1970 %n%s%a %");
    EXPECT_EQ(LocalTimeText(L"", 0), L"");
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

TEST(LocalTime, SpeaksEnglishInEveryLocale) {
    const EnvironmentGuard zone{"TZ", "UTC0"};
    const EnvironmentGuard locale{"LC_ALL", "de_DE.UTF-8"};
    std::setlocale(LC_ALL, "");
    EXPECT_EQ(LocalTimeText(L"%A %B", 0), L"Thursday January");
    std::setlocale(LC_ALL, "C");
}

TEST(LocalTime, KnowsTheTimeNow) {
    const std::time_t before = std::time(nullptr);
    const std::int64_t now = CurrentTime();
    EXPECT_GE(now, before);
    EXPECT_LE(now, std::time(nullptr));
}

}  // namespace
