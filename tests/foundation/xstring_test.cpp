#include "veltrane/foundation/xstring.h"

#include <climits>

#include "support/support.h"

namespace {

TEST(XString, MinOrMaxTakesTheModeExactly) {
    EXPECT_EQ(GetMinOrMax(L"MIN", L"7", L"x"), 0);  // no number reads as 0
    EXPECT_EQ(GetMinOrMax(L"min", L"7", L"x"), 7);
    EXPECT_EQ(GetMinOrMax(L"", L"-9", L"-3"), -3);
    EXPECT_EQ(GetMinOrMax(L"MIN", L"99999999999", L"2"), 2);
}

TEST(XString, SplitsAtTheFirstOrLastSeparator) {
    const std::tuple<decltype(&SplitString), const wchar_t*, const wchar_t*, const wchar_t*> cases[] = {
        {SplitString, L"a=b=c", L"a", L"b=c"},
        {SplitString, L"novalue", L"", L"novalue"},
        {SplitString, L"=", L"", L""},
        {SplitStringReverse, L"a=b=c", L"a=b", L"c"},
        {SplitStringReverse, L"novalue", L"", L"novalue"},
    };
    for (const auto& [split, text, left, right] : cases) {
        CString whole = text;  // a part may take the place of the whole
        CString after = L"old";
        split(whole, after, whole, L'=');
        EXPECT_EQ(std::pair(whole, after), std::pair(CString{left}, CString{right}));
    }
}

TEST(XString, GivesFieldsBetweenCommasAsTheyAre) {
    const wchar_t* const fields[] = {L"a", L" b", L"", L"d", L""};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(GetArgument(i, L"a, b,,d"), fields[i]);
    EXPECT_EQ(GetArgument(1, L",b"), L"b");
    EXPECT_EQ(GetArgument(-3, L",b") + GetArgument(INT_MAX, L"a,b"), L"");  // below 0 is the first
}

TEST(XString, AddsItemsToAList) {
    CString list;
    for (const wchar_t* item : {L"a", L"", L"b"}) AddString(list, item);
    EXPECT_EQ(list, L"a, , b");
    AddString(list, list);
    EXPECT_EQ(list, L"a, , b, a, , b");
    int moves = 0;  // of the text: a list that is copied for each item moves each time
    for (int i = 0; i < 1000; ++i) {
        const wchar_t* const before = list.GetString();
        AddString(list, L"item");
        moves += list.GetString() != before;
    }
    EXPECT_LT(moves, 20);
}

TEST(XString, TabulatorsReachTheColumn) {
    EXPECT_EQ(GetTabulator(L"ten chars.", 4), L"\t\t\t");
    EXPECT_EQ(GetTabulator(-1) + GetTabulator(L"12345678", 1) + GetTabulator(L"12345678", INT_MIN), L"");
}

}  // namespace
