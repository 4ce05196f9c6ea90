#include "veltrane/collections/xsetstring.h"

#include "collections/sets.h"

constexpr auto StringsOf = SetOf<CString, XSetString>;

TEST(XSetString, InsertListSplitsTrimsAndDropsDuplicates) {
    struct {
        Texts before;
        const wchar_t* text;
        const wchar_t* separators;
        Texts after;
    } const cases[] = {
        {{}, L"b; a ;b", L";", {L"b", L"a"}},
        {{}, L"", L";", {L""}},
        {{}, L"a,,b,", L",", {L"a", L"", L"b"}},
        {{}, L"a;b,A", L",;", {L"a", L"b", L"A"}},
        {{}, L" a b ", L"", {L"a b"}},
        {{}, L"a   b ;c", L" ;", {L"a", L"b", L"", L"c"}},
        {{L"x", L"x"}, L"x,y", L",", {L"x", L"x", L"y"}},
    };
    for (const auto& [before, text, separators, after] : cases) {
        XSetString set = StringsOf(before);
        set.InsertList(text, /*sort*/ false, separators);
        EXPECT_EQ(ValuesOf(set), after);
        EXPECT_FALSE(set.IsSorted());
    }
}

TEST(XSetString, ALongListGivesTheSameAsPieceByPiece) {
    std::wstring text;
    XSetString expected = StringsOf({L"7", L"7", L"none"});
    XSetString set = expected;
    for (int i = 0; i < 1000; ++i) {
        const CString piece = FormatText(L"%d", i * i % 777);
        text.append(piece.View()).append(L" , ");
        expected.Insert(piece, /*unique*/ true);
    }
    expected.Insert(L"", /*unique*/ true);
    set.InsertList(CString{text}, /*sort*/ false, L",");
    EXPECT_EQ(ValuesOf(set), ValuesOf(expected));
    set.InsertList(CString{text}, /*sort*/ true, L",");
    expected.Sort();
    EXPECT_EQ(ValuesOf(set), ValuesOf(expected));
    set.InsertList(CString{text}, /*sort*/ false, L",");
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
    struct {
        Texts a, b;
        int order;
    } const cases[] = {{{L"a", L"b", L"c"}, {L"a"}, 2},
                       {{L"a"}, {L"z", L"z"}, -1},
                       {{L"a"}, {L"a"}, 0},
                       {{L"a", L"B"}, {L"a", L"b"}, -1},
                       {{L"b", L"a"}, {L"a", L"b"}, 1}};
    for (const auto& [a, b, order] : cases) EXPECT_EQ(StringsOf(a).Compare(StringsOf(b)), order);
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
