#include "veltrane/collections/xsetstring.h"

#include "collections/sets.h"

using namespace veltrane;
using namespace veltrane::detail;

constexpr auto StringsOf = SetOf<CString, XSetString>;

TEST(XSetString, InsertListSplitsTrimsAndDropsDuplicates) {
    struct {
        const char* what;
        Texts before;
        const wchar_t* text;
        const wchar_t* separators;
        bool sort;
        Texts after;
    } const cases[] = {
        {"sorted at the end", {}, L"b; a ;b", L";", true, {L"a", L"b"}},
        {"empty text", {}, L"", L";", false, {L""}},
        {"empty pieces once", {}, L"a,,b,", L",", false, {L"a", L"", L"b"}},
        {"any separator", {}, L"a;b,A", L",;", false, {L"a", L"b", L"A"}},
        {"no separators", {}, L" a b ", L"", false, {L"a b"}},
        {"a run of blanks separates once", {}, L"a   b ;c", L" ;", false, {L"a", L"b", L"", L"c"}},
        {"what the set holds counts, and stays twice", {L"x", L"x"}, L"x,y", L",", false, {L"x", L"x", L"y"}},
    };
    for (const auto& [what, before, text, separators, sort, after] : cases) {
        XSetString set = StringsOf(before);
        set.InsertList(text, sort, separators);
        EXPECT_EQ(ValuesOf(set), after) << what;
        EXPECT_EQ(set.IsSorted(), sort) << what;
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
    set.Sort();
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
    EXPECT_EQ(StringsOf({L"a", L"b", L"c"}).Compare(StringsOf({L"a"})), 2);
    EXPECT_EQ(StringsOf({L"a"}).Compare(StringsOf({L"z", L"z"})), -1);
    EXPECT_LT(StringsOf({L"a", L"B"}).Compare(StringsOf({L"a", L"b"})), 0);
    EXPECT_GT(StringsOf({L"b", L"a"}).Compare(StringsOf({L"a", L"b"})), 0);
    EXPECT_EQ(StringsOf({L"a"}).Compare(StringsOf({L"a"})), 0);
}

TEST(XSetString, ArithmeticMatchesDuplicatesOneToOneAndAccumulates) {
    XSetString a = StringsOf({L"c", L"x", L"a", L"x"});
    XSetString b = StringsOf({L"x", L"d", L"c"});
    XSetString result = StringsOf({L"first"});
    const CString* const place = a.GetAt(0);
    result.Sub(a, b);
    EXPECT_EQ(a.GetAt(0), place) << "sorted in place";
    EXPECT_EQ(ValuesOf(result), (Texts{L"first", L"a", L"x"}));
    result.Intersection(a, b);
    EXPECT_EQ(ValuesOf(result), (Texts{L"first", L"a", L"x", L"c", L"x"}));
    EXPECT_TRUE(a.IsSorted() && b.IsSorted());
    a.Intersection(a, a);
    EXPECT_EQ(a.Size(), 8) << "a target that is both arguments, too";
}
