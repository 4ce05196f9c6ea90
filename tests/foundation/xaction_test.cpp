#include "veltrane/foundation/xaction.h"

#include <climits>
#include <cstdio>
#include <random>

#include "support/support.h"
#include "veltrane/platform/process/process.h"

namespace {

void WaitTicks(std::uint32_t ticks) {
    const auto start = static_cast<std::uint32_t>(TickCount());
    while (static_cast<std::uint32_t>(TickCount()) - start < ticks) continue;
}

struct Parts {
    Parts(long value, int precision) { XAction::TimeDHMS(days, hours, minutes, seconds, value, precision); }
    int days, hours, minutes;
    CString seconds;
};

TEST(XAction, ShowsDurationsInTheirUnits) {
    const std::tuple<long, int, bool, const wchar_t*> cases[] = {
        {5300, 1, false, L" 5.3 seconds"},
        {5300, -4, false, L" 5 seconds"},
        {45000, 1, true, L"45.0 s"},
        {65000, 1, false, L"01:05.0 minutes"},
        {65000, 0, true, L"01:05 m"},
        {3723456, 1, false, L"01:02:03.5 hours  "},  // the long words are equally wide
        {36000000, 2, true, L"10:00:00.00 h"},
        {90061000, 1, false, L"1 day and 01:01:01.0 hours"},
        {180000000, 1, true, L"2 days and 02:00:00.0 h"},
        {119999, 1, false, L"01:60.0 minutes"},  // no carry after the rounding
        {-65000, 1, false, L"-5.0 seconds"},
        {LONG_MAX, 0, true, L"106751991167 days and 07:12:56 h"},
    };
    for (const auto& [value, precision, shortUnits, text] : cases) {
        EXPECT_EQ(XAction::TimeStr(value, precision, shortUnits), text) << value;
    }
    EXPECT_EQ(XAction::TimeStr(1, 1200, /*shortUnits*/ true).GetLength(), 1205) << "all the decimals asked for";
    EXPECT_EQ((Parts{LONG_MIN, 1}.days), INT_MIN) << "the nearest int";
}

// The reference is what the C library prints for the documented formats of the seconds.
TEST(XAction, RoundsSecondsAsTheCLibraryDoes) {
    std::mt19937 random{20261124};
    std::uniform_int_distribution<long> anyValue{INT_MIN, INT_MAX};
    for (int i = 0; i < 60'000; ++i) {
        const long value = anyValue(random) / (i % 2 == 0 ? 1 : 10'000);
        const int precision = i % 7;
        const Parts parts{value, precision};
        double seconds = static_cast<double>(value) / 1000.0;
        seconds -= static_cast<double>(static_cast<long>(seconds / 60.0)) * 60;
        const bool zeros = seconds < 10.0 && (parts.days > 0 || parts.hours > 0 || parts.minutes > 0);
        char text[64];
        std::snprintf(text, sizeof text, zeros ? "%0*.*f" : "%*.*f", precision > 0 ? precision + 3 : 2, precision,
                      seconds);
        ASSERT_EQ(ToUtf8(parts.seconds), text) << value << " ms, precision " << precision;
    }
}

TEST(XAction, AddsUpItsIntervals) {
    XAction action;
    EXPECT_EQ(action.ElapsedStr(), L" 0.0 seconds");
    long before = 0;
    for (const auto begin : {&XAction::Start, &XAction::Continue}) {
        (action.*begin)();
        WaitTicks(3);
        EXPECT_GE(action.Elapsed(), before + 3);
        action.Stop();
        before = action.Elapsed();
        WaitTicks(3);
        action.Stop();  // nothing runs
        EXPECT_EQ(action.Elapsed(), before);
    }
    (action += XAction{action}).Start();
    action.Stop();
    EXPECT_LT(action.Elapsed(), before) << "a new measurement begins at zero";
}

TEST(XAction, RunningActionsCannotBeAdded) {
    XAction stopped, running;
    running.Start();
    for (auto [target, other] : {std::pair{&stopped, &running}, std::pair{&running, &stopped}}) {
        const XException error = ErrorOf([target = target, other = other] { *target += *other; });
        EXPECT_EQ(error.GetMessage(), L"Error adding two times: Cannot add times of still running actions!");
        EXPECT_EQ(error.GetLocation().Left(39), L"<XAction::operator +=> in [xaction], li");
    }
    EXPECT_EQ(stopped.Elapsed(), 0);
}

}  // namespace
