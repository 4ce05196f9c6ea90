#include "collections/xsetint.h"

#include "support/support.h"

namespace {

XSetInt SetOf(std::initializer_list<int> values) {
    XSetInt set;
    for (const int value : values) set.Insert(value);
    return set;
}

std::vector<int> ValuesOf(const XSetInt& set) {
    std::vector<int> values;
    for (int i = 0; i < set.Size(); ++i) values.push_back(set.GetConstRefAt(i));
    return values;
}

using Ints = std::vector<int>;

}  // namespace

TEST(XSetInt, BuildSetTakesTheNumbersAboveZero) {
    struct {
        const char* what;
        const wchar_t* text;
        Ints values;
    } const cases[] = {
        {"blanks around numbers", L"1, 3,7", {1, 3, 7}},
        {"zero, negative, words and empty pieces are skipped", L" 12, 0,-3, 7 ,abc,7,,", {12, 7, 7}},
        {"no ranges", L"3-5", {3}},
        {"wide white space", L"\u00A0\u30004 ", {4}},
        {"beyond int", L"99999999999", {INT_MAX}},
        {"nothing", L"", {}},
    };
    for (const auto& [what, text, values] : cases) {
        SCOPED_TRACE(what);
        XSetInt set;
        set.BuildSet(text);
        EXPECT_EQ(ValuesOf(set), values);
    }
    XSetInt set = SetOf({9});
    set.BuildSet(L"12,7");
    EXPECT_EQ(ValuesOf(set), (Ints{9, 12, 7})) << "not cleared first";
    EXPECT_EQ(set.GetMax(), 12);
    EXPECT_FALSE(set.IsSorted());
}

TEST(XSetInt, GetFreeNumbersFillsTheGapsInStoredOrder) {
    struct {
        const char* what;
        Ints values;
        Ints free;
    } const cases[] = {
        {"sorted", {2, 5, 6}, {1, 3, 4}},
        {"empty", {}, {}},
        {"unsorted", {3, 1}, {1, 2}},
        {"negative", {-2, 1}, {-1, 0}},
    };
    for (const auto& [what, values, free] : cases) {
        SCOPED_TRACE(what);
        XSetInt set;
        for (const int value : values) set.Insert(value);
        XSetInt out;
        set.GetFreeNumbers(out);
        EXPECT_EQ(ValuesOf(out), free);
    }
    XSetInt self = SetOf({2, 4});
    self.GetFreeNumbers(self);
    EXPECT_EQ(ValuesOf(self), (Ints{2, 4, 1, 3}));
}

TEST(XSetInt, GetNextNumberReusesTheGapsAndThenCountsUp) {
    XSetInt fresh;
    EXPECT_EQ(fresh.GetNextNumber(), 0);
    EXPECT_EQ(fresh.GetNextNumber(), 1);
    XSetInt set = SetOf({3, 8});
    EXPECT_EQ(set.GetNextNumber(), 3);
    EXPECT_EQ(ValuesOf(set), Ints{8});
    EXPECT_EQ(set.GetNextNumber(), 8);
    EXPECT_EQ(set.GetNextNumber(), 9);
    set.SetMax(INT_MAX);
    EXPECT_EQ(set.GetNextNumber(), INT_MIN) << "wraps";
}

TEST(XSetInt, CalcMaxBelievesTheSortedMark) {
    XSetInt set = SetOf({2, 4});
    set.SetMax(10);
    set.CalcMax();
    EXPECT_EQ(set.GetMax(), 10);
    set.Sort();
    set.CalcMax();
    EXPECT_EQ(set.GetMax(), 4);
    XSetInt empty;
    empty.CalcMax();
    EXPECT_EQ(empty.GetMax(), 0);
    EXPECT_EQ(empty.GetNextNumber(), 1);
}

TEST(XSetInt, UnionAppendsAndSorts) {
    const XSetInt other = SetOf({5, 1});
    XSetInt set = SetOf({3, 1});
    set.Union(other);
    set.Union(nullptr);
    EXPECT_EQ(ValuesOf(set), (Ints{1, 1, 3, 5}));
    EXPECT_EQ(set.GetMax(), 5);
    set.Union(set);
    EXPECT_EQ(set.Size(), 8);
    EXPECT_EQ(XSetInt(&other).GetMax(), 5);
    EXPECT_EQ(XSetInt(nullptr).GetMax(), -1);
}
