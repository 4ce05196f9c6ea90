#include "veltrane/platform/text/indexformat.h"

#include <climits>

#include "support/support.h"

namespace {

TEST(IndexFormat, ReadsTheNumberOfAnItemThatFits) {
    const std::tuple<const wchar_t*, const wchar_t*, int> cases[] = {
        {L"x-%d", L"x-2y", 2},
        {L"x-%d", L"x-\x3000-7", -7},
        {L"a \t b%d", L"ab1", 1},
        {L"a b%d", L"a \x2003\t b1", 1},
        {L"50%_a%n\\%d", L"50%_a%n\\3", 3},
        {L"%s%*d%5d%[%d", L"%s%*d%5d%[4", 4},
        {L"%d\\%d", L"1\\2", 1},
        {L"%%d%d", L"%d8", 8},
    };
    int index = 0;
    for (const auto& [format, item, expected] : cases) {
        EXPECT_TRUE(MatchIndex(item, format, index) && index == expected) << ToUtf8(item);
    }
    for (const wchar_t* item : {L"x-", L"x-+", L"x", L"", L"X-1", L"x%"}) {
        index = -77;
        EXPECT_FALSE(MatchIndex(item, L"x-%d", index) || MatchIndex(item, item, index)) << ToUtf8(item);
        EXPECT_EQ(index, -77);
    }
}

TEST(IndexFormat, WritesWhatItReads) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"50%%_a%n\\%d", L"50%_a%n\\-2147483648"},
        {L"%d\\%d", L"-2147483648\\%d"},
        {L"no number%", L"no number%"},
        {L"%%%d", L"%-2147483648"},
        {L"", L""},
    };
    for (const auto& [format, item] : cases) EXPECT_EQ(FormatIndex(format, INT_MIN), item);
}

}  // namespace
