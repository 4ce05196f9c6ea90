#include "veltrane/platform/text/numbers.h"

#include <climits>

#include "support/support.h"

namespace {

TEST(Numbers, AreReadAtTheFrontOfATextWithinTheLimitsOfInt) {
    const std::pair<const wchar_t*, int> cases[] = {
        {L"2147483647", INT_MAX},
        {L"2147483648", INT_MAX},
        {L"999999999999999999999", INT_MAX},
        {L"-2147483648", INT_MIN},
        {L"-2147483649", INT_MIN},
        {L"  \xA0-17x", -17},
        {L"+007", 7},
        {nullptr, 0},
    };
    for (const auto& [text, number] : cases) EXPECT_EQ(_wtoi(text), number) << ToUtf8(text);

    for (const wchar_t* text : {L"", L"x1", L"- 1", L"--1", L"+-1", L" +", L"\x0661"}) {
        int untouched = 5;
        EXPECT_FALSE(ScanInteger(text, untouched) || untouched != 5) << ToUtf8(text);
    }
}

}  // namespace
