#include "foundation/xaction.h"

#include <climits>
#include <cstdio>
#include <random>

#include "platform/process.h"
#include "support/support.h"

namespace {

void WaitTicks(std::uint32_t ticks) {
    const auto start = static_cast<std::uint32_t>(TickCount());
    while (static_cast<std::uint32_t>(TickCount()) - start < ticks) {
    }
}

TEST(XAction, ShowsDurationsInTheirUnits) {
    struct {
        long value;
        int precision;
        bool shortUnits;
        const wchar_t* text;
    } const cases[] = {
        {0, 1, false, L" 0.0 seconds"},
        {5300, 1, false, L" 5.3 seconds"},
        {5300, 0, false, L" 5 seconds"},
        {5300, -4, false, L" 5 seconds"},
        {5300, 3, false, L" 5.300 seconds"},
        {45000, 1, true, L"45.0 s"},
        {65000, 1, false, L"01:05.0 minutes"},
        {65000, 0, true, L"01:05 m"},
        {3723456, 1, false, L"01:02:03.5 hours  "},  // the long words are equally wide
        {3723456, 1, true, L"01:02:03.5 h"},
        {36000000, 2, false, L"10:00:00.00 hours  "},
        {90061000, 1, false, L"1 day and 01:01:01.0 hours"},
        {180000000, 1, true, L"2 days and 02:00:00.0 h"},
        {59960, 1, false, L"60.0 seconds"},  // no carry behind the rounding
        {119999, 1, false, L"01:60.0 minutes"},
        {-65000, 1, false, L"-5.0 seconds"},
    };
    for (const auto& [value, precision, shortUnits, text] : cases) {
        EXPECT_EQ(XAction::TimeStr(value, precision, shortUnits), text) << value;
    }
    // The largest values have an answer, too; days that are no int are the nearest.
    EXPECT_EQ(XAction::TimeStr(LONG_MAX, 0, true).Left(21), L"106751991167 days and");
    int days = 0;
    int hours = 0;
    int minutes = 0;
    CString seconds;
    XAction::TimeDHMS(days, hours, minutes, seconds, LONG_MIN, 1);
    EXPECT_EQ(days, INT_MIN);
    EXPECT_LE(minutes, 0);
}

// What the C library prints for the documented formats of the seconds.
std::string ReferenceSeconds(long value, int precision, bool hasLargerUnit) {
    double seconds = static_cast<double>(value) / 1000.0;
    seconds -= static_cast<double>(static_cast<long>(seconds / 60.0)) * 60;
    const bool zeros = seconds < 10.0 && hasLargerUnit;
    char text[64];
    if (precision > 0) {
        std::snprintf(text, sizeof text, zeros ? "%0*.*f" : "%*.*f", precision + 3, precision, seconds);
    } else {
        std::snprintf(text, sizeof text, zeros ? "%02.0f" : "%2.0f", seconds);
    }
    return text;
}

TEST(XAction, RoundsSecondsAsTheCLibraryDoes) {
    std::mt19937 random{20261124};
    std::uniform_int_distribution<long> anyValue{INT_MIN, INT_MAX};
    std::uniform_int_distribution<long> smallValue{-200'000, 200'000};
    for (int i = 0; i < 60'000; ++i) {
        const long value = i % 2 == 0 ? anyValue(random) : smallValue(random);
        const int precision = i % 7;
        int days = 0;
        int hours = 0;
        int minutes = 0;
        CString seconds;
        XAction::TimeDHMS(days, hours, minutes, seconds, value, precision);
        ASSERT_EQ(ToUtf8(seconds), ReferenceSeconds(value, precision, days > 0 || hours > 0 || minutes > 0))
            << value << " ms, precision " << precision;
    }
}

TEST(XAction, AddsUpItsIntervals) {
    XAction action;
    EXPECT_EQ(action.ElapsedStr(), L" 0.0 seconds");
    action.Start();
    WaitTicks(3);
    EXPECT_GE(action.Elapsed(), 3);
    action.Stop();
    const long first = action.Elapsed();
    WaitTicks(3);
    action.Stop();  // nothing runs
    EXPECT_EQ(action.Elapsed(), first);
    action.Continue();
    WaitTicks(3);
    action.Stop();
    EXPECT_GE(action.Elapsed(), first + 3);
    XAction sum = action;
    sum += action;
    EXPECT_EQ(sum.Elapsed(), 2 * action.Elapsed());
    action.Start();
    action.Stop();
    EXPECT_LT(action.Elapsed(), first + 3) << "a new measurement begins at zero";
}

TEST(XAction, RunningActionsCanNotBeAdded) {
    XAction stopped;
    XAction running;
    running.Start();
    for (auto [target, other] : {std::pair{&stopped, &running}, std::pair{&running, &stopped}}) {
        const XException error = ErrorOf([target = target, other = other] { *target += *other; });
        EXPECT_EQ(error.GetMessage(), L"Error adding two times: Cannot add times of still running actions!");
        EXPECT_EQ(error.GetNumber(), -1);
        EXPECT_EQ(error.GetLocation().Left(39), L"<XAction::operator +=> in [xaction], li");
    }
    EXPECT_EQ(stopped.Elapsed(), 0);
}

}  // namespace
