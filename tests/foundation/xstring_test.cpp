#include "veltrane/foundation/xstring.h"

#include <climits>

#include "support/support.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

TEST(XString, MinOrMaxTakesTheModeExactly) {
    EXPECT_EQ(GetMinOrMax(L"MIN", L"7", L"x"), 0);  // no number reads as 0
    EXPECT_EQ(GetMinOrMax(L"min", L"7", L"x"), 7);
    EXPECT_EQ(GetMinOrMax(L"", L"-9", L"-3"), -3);
    EXPECT_EQ(GetMinOrMax(L"MIN", L"99999999999", L"2"), 2);
}

TEST(XString, SplitsAtTheFirstOrLastSeparator) {
    struct {
        decltype(&SplitString) split;
        const wchar_t *text, *left, *right;
    } const cases[] = {
        {SplitString, L"a=b=c", L"a", L"b=c"},
        {SplitString, L"novalue", L"", L"novalue"},
        {SplitString, L"=", L"", L""},
        {SplitStringReverse, L"a=b=c", L"a=b", L"c"},
        {SplitStringReverse, L"novalue", L"", L"novalue"},
    };
    for (const auto& [split, text, left, right] : cases) {
        CString whole = text;  // a part may take the place of the whole
        CString behind = L"old";
        split(whole, behind, whole, L'=');
        EXPECT_EQ(whole, left);
        EXPECT_EQ(behind, right);
    }
}

TEST(XString, GivesFieldsBetweenCommasAsTheyAre) {
    const wchar_t* const fields[] = {L"a", L" b", L"", L"d", L""};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(GetArgument(i, L"a, b,,d"), fields[i]);
    EXPECT_EQ(GetArgument(-3, L",b"), L"");  // below 0 is the first
    EXPECT_EQ(GetArgument(INT_MAX, L"a,b"), L"");
}

TEST(XString, AddsItemsToAList) {
    CString list;
    for (const wchar_t* item : {L"a", L"", L"b"}) AddString(list, item);
    EXPECT_EQ(list, L"a, , b");
}

TEST(XString, TabulatorsReachTheColumn) {
    EXPECT_EQ(GetTabulator(-1), L"");
    EXPECT_EQ(GetTabulator(L"ten chars.", 4), L"\t\t\t");
    EXPECT_EQ(GetTabulator(L"12345678", 1), L"");
    EXPECT_EQ(GetTabulator(L"12345678", INT_MIN), L"");
}

}  // namespace
