#include "veltrane/collections/xsetstring.h"

#include "collections/sets.h"

constexpr auto StringsOf = SetOf<CString, XSetString>;

TEST(XSetString, InsertListSplitsTrimsAndDropsDuplicates) {
    const std::tuple<const wchar_t*, const wchar_t*, Texts> cases[] = {
        {L"b; a ;b", L";", {L"x", L"x", L"b", L"a"}}, {L"", L";", {L"x", L"x", L""}},
        {L"a,,x,", L",", {L"x", L"x", L"a", L""}},    {L"a;b,A", L",;", {L"x", L"x", L"a", L"b", L"A"}},
        {L" a b ", L"", {L"x", L"x", L"a b"}},        {L"a   b ;c", L" ;", {L"x", L"x", L"a", L"b", L"", L"c"}},
    };
    for (const auto& [text, separators, after] : cases) {
        XSetString set = StringsOf({L"x", L"x"});
        set.InsertList(text, /*sort*/ false, separators);
        EXPECT_EQ(ValuesOf(set), after);
        EXPECT_FALSE(set.IsSorted());
    }
}

TEST(XSetString, ALongListGivesTheSameAsPieceByPiece) {
    CString text;
    XSetString expected = StringsOf({L"7", L"7", L"none"});
    XSetString set = expected;
    for (int i = 0; i < 1000; ++i) {
        const CString piece = FormatText(L"%d", i * i % 777);
        text += piece + L" , ";
        expected.Insert(piece, /*unique*/ true);
    }
    expected.Insert(L"", /*unique*/ true);
    set.InsertList(text, /*sort*/ false, L",");
    EXPECT_EQ(ValuesOf(set), ValuesOf(expected));
    set.InsertList(text, /*sort*/ true, L",");
    expected.Sort();
    EXPECT_EQ(ValuesOf(set), ValuesOf(expected));
    set.InsertList(text, /*sort*/ false, L",");
    EXPECT_TRUE(set.IsSorted()) << "nothing was new";
}

TEST(XSetString, GetListJoinsWithCommas) {
    CString list = L"old";
    StringsOf({L"x", L"y", L"z"}).GetList(list);
    EXPECT_EQ(list, L"x,y,z");
    XSetString{}.GetList(list);
    EXPECT_EQ(list, L"");
}

TEST(XSetString, CompareTakesSizesFirst) {
    const XSetString set = StringsOf({L"b", L"B"});
    const std::pair<Texts, int> cases[] = {{{}, 2}, {{L"c", L"", L""}, -1}, {{L"b", L"b"}, -1}, {{L"a", L"b"}, 1}};
    for (const auto& [other, order] : cases) EXPECT_EQ(set.Compare(StringsOf(other)), order);
    EXPECT_EQ(set.Compare(set), 0);
}

TEST(XSetString, ArithmeticMatchesDuplicatesOneToOneAndAccumulates) {
    XSetString a = StringsOf({L"c", L"x", L"a", L"x"});
    XSetString b = StringsOf({L"x", L"d", L"c"});
    XSetString result = StringsOf({L"first"});
    const CString* const place = a.GetAt(0);
    result.Sub(a, b);
    EXPECT_EQ(ValuesOf(result), (Texts{L"first", L"a", L"x"}));
    EXPECT_EQ(a.GetAt(0), place) << "sorted in place";
    result.Intersection(a, b);
    EXPECT_EQ(ValuesOf(result), (Texts{L"first", L"a", L"x", L"c", L"x"}));
    EXPECT_TRUE(a.IsSorted() && b.IsSorted());
    a.Intersection(a, a);
    EXPECT_EQ(a.Size(), 8) << "a target that is both arguments, too";
}
