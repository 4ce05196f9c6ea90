#include "platform/indexformat.h"

#include <climits>
#include <optional>

#include "support/support.h"

namespace {

std::optional<int> Match(const wchar_t* format, const wchar_t* item) {
    int index = -77;
    if (MatchIndex(item, format, index)) return index;
    EXPECT_EQ(index, -77);
    return {};
}

TEST(IndexFormat, ReadsTheNumberOfAnItemThatFits) {
    struct {
        const wchar_t* format;
        const wchar_t* item;
        std::optional<int> index;
    } const cases[] = {
        {L"x-%d", L"x-2", 2},
        {L"x-%d", L"x-2y", 2},
        {L"x-%d", L"x--1", -1},
        {L"x-%d", L"x- 7", 7},
        {L"x-%d", L"x-\x3000+7", 7},
        {L"x-%d", L"x-007", 7},
        {L"x-%d", L"x-", {}},
        {L"x-%d", L"x-+", {}},
        {L"x-%d", L"x", {}},
        {L"x-%d", L"", {}},
        {L"x-%d", L"X-1", {}},
        {L"x-%d", L"x-\x0661", {}},  // an Arabic digit
        {L"x-%d", L"x-99999999999999999999", INT_MAX},
        {L"x-%d", L"x--99999999999999999999", INT_MIN},
        {L"%d", L"5", 5},
        {L"", L"", {}},
        {L"x", L"x", {}},
        {L"a \t b%d", L"ab1", 1},
        {L"a b%d", L"a \x2003\t b1", 1},
        {L"a b%d", L"a", {}},
        {L"files\\%d", L"files\\3", 3},
        {L"50%%_a\\%d", L"50%_a\\3", 3},
        {L"50%_a%n\\%d", L"50%_a%n\\3", 3},
        {L"%s%*d%5d%[%d", L"%s%*d%5d%[4", 4},
        {L"%d\\%d", L"1\\2", 1},
        {L"x%", L"x%", {}},
        {L"%%d%d", L"%d8", 8},
    };
    for (const auto& [format, item, index] : cases) {
        EXPECT_EQ(Match(format, item), index) << ToUtf8(CString{format} + L" / " + item);
    }
}

TEST(IndexFormat, WritesWhatItReads) {
    struct {
        const wchar_t* format;
        int index;
        const wchar_t* item;
    } const cases[] = {
        {L"FILES\\%d", 7, L"FILES\\7"},
        {L"x%d", INT_MIN, L"x-2147483648"},
        {L"50%%_a%n\\%d", 1, L"50%_a%n\\1"},
        {L"%d\\%d", 3, L"3\\%d"},
        {L"no number%", 3, L"no number%"},
        {L"%%d", 3, L"%d"},
        {L"%%%d", 3, L"%3"},
        {L"", 3, L""},
    };
    for (const auto& [format, index, item] : cases) EXPECT_EQ(FormatIndex(format, index), item);
}

}  // namespace
