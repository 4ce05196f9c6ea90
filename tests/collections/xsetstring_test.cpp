#include "collections/xsetstring.h"

#include "support/support.h"

namespace {

using Texts = std::vector<CString>;

XSetString SetOf(const Texts& values) {
    XSetString set;
    for (const CString& value : values) set.Insert(value, /*unique*/ false);
    return set;
}

Texts ValuesOf(const XSetString& set) {
    Texts values;
    for (int i = 0; i < set.Size(); ++i) values.push_back(set.GetConstRefAt(i));
    return values;
}

}  // namespace

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
        {"any separator", {}, L"a;b,c", L",;", false, {L"a", L"b", L"c"}},
        {"no separators", {}, L" a b ", L"", false, {L"a b"}},
        {"a run of blanks separates once", {}, L"a   b ;c", L" ;", false, {L"a", L"b", L"", L"c"}},
        {"what the set holds counts, and stays twice", {L"x", L"x"}, L"x,y", L",", false, {L"x", L"x", L"y"}},
        {"case counts", {}, L"A,a", L",", false, {L"A", L"a"}},
    };
    for (const auto& [what, before, text, separators, sort, after] : cases) {
        SCOPED_TRACE(what);
        XSetString set = SetOf(before);
        set.InsertList(text, sort, separators);
        EXPECT_EQ(ValuesOf(set), after);
        EXPECT_EQ(set.IsSorted(), sort);
    }
}

TEST(XSetString, ALongListGivesTheSameAsPieceByPiece) {
    std::wstring text;
    XSetString expected = SetOf({L"7", L"7", L"none"});
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
    SetOf({L"x", L"y", L"z"}).GetList(list);
    EXPECT_EQ(list, L"x,y,z");
    SetOf({L"x"}).GetList(list);
    EXPECT_EQ(list, L"x");
    SetOf({}).GetList(list);
    EXPECT_EQ(list, L"");
}

TEST(XSetString, CompareTakesSizesFirst) {
    EXPECT_EQ(SetOf({L"a", L"b", L"c"}).Compare(SetOf({L"a"})), 2);
    EXPECT_EQ(SetOf({L"a"}).Compare(SetOf({L"z", L"z"})), -1);
    EXPECT_LT(SetOf({L"a", L"B"}).Compare(SetOf({L"a", L"b"})), 0);
    EXPECT_EQ(SetOf({L"a"}).Compare(SetOf({L"a"})), 0);
}

TEST(XSetString, ArithmeticMatchesDuplicatesOneToOneAndAccumulates) {
    XSetString a = SetOf({L"c", L"x", L"a", L"x"});
    XSetString b = SetOf({L"x", L"d", L"c"});
    XSetString result = SetOf({L"first"});
    result.Sub(a, b);
    EXPECT_EQ(ValuesOf(result), (Texts{L"first", L"a", L"x"}));
    result.Clear();
    result.Intersection(a, b);
    EXPECT_EQ(ValuesOf(result), (Texts{L"c", L"x"}));
    EXPECT_TRUE(a.IsSorted() && b.IsSorted());
    result.Intersection(a, a);
    EXPECT_EQ(result.Size(), 6);
    a.Sub(a, b);
    EXPECT_EQ(ValuesOf(a), (Texts{L"a", L"c", L"x", L"x", L"a", L"x"})) << "a target that is an argument, too";
}
