#include "foundation/xstring.h"

#include <climits>
#include <utility>

#include "support/support.h"

namespace {

using Split = void (*)(CString&, CString&, const CString&, wchar_t);

std::pair<CString, CString> PartsBy(Split split, const CString& text) {
    CString left = L"old";
    CString right = L"old";
    split(left, right, text, L'=');
    return {left, right};
}

TEST(XString, MinOrMaxTakesTheModeExactly) {
    EXPECT_EQ(GetMinOrMax(L"MIN", L"7", L"x"), 0);  // no number reads as 0
    EXPECT_EQ(GetMinOrMax(L"min", L"7", L"x"), 7);
    EXPECT_EQ(GetMinOrMax(L"", L"-9", L"-3"), -3);
    EXPECT_EQ(GetMinOrMax(L"MIN", L"99999999999", L"2"), 2);
}

TEST(XString, SplitsAtTheFirstOrLastSeparator) {
    using Parts = std::pair<CString, CString>;
    struct {
        const wchar_t* text;
        Parts first, last;
    } const cases[] = {
        {L"key=value", {L"key", L"value"}, {L"key", L"value"}},
        {L"novalue", {L"", L"novalue"}, {L"", L"novalue"}},
        {L"a=b=c", {L"a", L"b=c"}, {L"a=b", L"c"}},
        {L"=", {L"", L""}, {L"", L""}},
    };
    for (const auto& [text, first, last] : cases) {
        EXPECT_EQ(PartsBy(SplitString, text), first);
        EXPECT_EQ(PartsBy(SplitStringReverse, text), last);
    }
    CString text = L"a=b";
    CString right;
    SplitString(text, right, text, L'=');  // a part may take the place of the whole
    EXPECT_EQ(right, L"b");
}

TEST(XString, GivesFieldsBetweenCommasAsTheyAre) {
    const wchar_t* const fields[] = {L"a", L" b", L"", L"d", L""};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(GetArgument(i, L"a, b,,d"), fields[i]);
    EXPECT_EQ(GetArgument(-3, L",b"), L"");  // below 0 is the first
    EXPECT_EQ(GetArgument(INT_MAX, L"a,b"), L"");
}

TEST(XString, AddsItemsToAList) {
    CString list;
    AddString(list, L"a");
    AddString(list, L"");
    AddString(list, L"b");
    EXPECT_EQ(list, L"a, , b");
}

TEST(XString, TabulatorsReachTheColumn) {
    EXPECT_EQ(GetTabulator(2), L"\t\t");
    EXPECT_EQ(GetTabulator(-1), L"");
    EXPECT_EQ(GetTabulator(L"ten chars.", 4), L"\t\t\t");
    EXPECT_EQ(GetTabulator(L"12345678", 1), L"");
    EXPECT_EQ(GetTabulator(L"12345678", INT_MIN), L"");
}

}  // namespace
