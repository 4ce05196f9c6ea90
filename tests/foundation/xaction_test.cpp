#include "veltrane/foundation/xaction.h"

#include <unistd.h>

#include <climits>

#include "support/support.h"

TEST(XAction, ShowsDurationsInTheirUnits) {
    const std::tuple<long, int, bool, const wchar_t*> cases[] = {
        {5300, 1, false, L" 5.3 seconds"},
        {5300, -4, false, L" 5 seconds"},
        {45000, 1, true, L"45.0 s"},
        {65000, 1, false, L"01:05.0 minutes"},
        {119999, 0, true, L"01:60 m"},               // no carry after the rounding
        {3723456, 1, false, L"01:02:03.5 hours  "},  // the long words are equally wide
        {36000000, 2, true, L"10:00:00.00 h"},
        {90061000, 1, false, L"1 day and 01:01:01.0 hours"},
        {172800000, 1, true, L"2 days and 00:00:00.0 h"},
        {-65000, 1, false, L"-5.0 seconds"},
        {LONG_MAX, 0, true, L"106751991167 days and 07:12:56 h"}};
    for (const auto& [value, precision, shortUnits, text] : cases) {
        EXPECT_EQ(XAction::TimeStr(value, precision, shortUnits), text) << value;
    }
    EXPECT_EQ(XAction::TimeStr(1, 1200, /*shortUnits*/ true).GetLength(), 1205) << "all the decimals asked for";
}

TEST(XAction, SplitsADurationIntoItsUnits) {
    int days, hours, minutes;
    CString seconds;
    XAction::TimeDHMS(days, hours, minutes, seconds, 180123456, 4);
    EXPECT_EQ(std::tuple(days, hours, minutes, seconds), std::tuple(2, 2, 2, CString{L"03.4560"}));
    XAction::TimeDHMS(days, hours, minutes, seconds, LONG_MIN, 0);
    EXPECT_EQ(std::tuple(days, hours, minutes, seconds), std::tuple(INT_MIN, -7, -12, CString{L"-56"}));
}

TEST(XAction, AddsUpItsIntervals) {
    XAction action;
    EXPECT_EQ(action.ElapsedStr(), L" 0.0 seconds");
    long before = 0;
    for (const auto begin : {&XAction::Start, &XAction::Continue}) {
        (action.*begin)();
        usleep(3000);
        EXPECT_GE(action.Elapsed(), before + 3);
        action.Stop();
        before = action.Elapsed();
        usleep(3000);
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
        const XException error = ErrorOf([sum = target, part = other] { *sum += *part; });
        EXPECT_EQ(error.GetMessage(), L"Error adding two times: Cannot add times of still running actions!");
        EXPECT_EQ(error.GetLocation().Left(39), L"<XAction::operator +=> in [xaction], li");
    }
    EXPECT_EQ(stopped.Elapsed(), 0);
}
