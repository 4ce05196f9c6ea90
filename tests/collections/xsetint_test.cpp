#include "veltrane/collections/xsetint.h"

#include <climits>

#include "collections/sets.h"

constexpr auto IntsOf = SetOf<int, XSetInt>;

TEST(XSetInt, BuildSetAppendsTheNumbersAboveZero) {
    const std::tuple<const wchar_t*, Ints, int> cases[] = {
        {L" 12, 0,-3, 7 ,abc,7,,", {9, 12, 7, 7}, 12}, {L"3-5", {9, 3}, 9}, {L"\u00A0\u30004 ", {9, 4}, 9},
        {L"99999999999", {9, INT_MAX}, INT_MAX},       {L"", {9}, 9},
    };
    for (const auto& [text, values, max] : cases) {
        XSetInt set;
        set.Insert(9);
        set.BuildSet(text);
        EXPECT_EQ(ValuesOf(set), values);
        EXPECT_EQ(set.GetMax(), max);
    }
}

TEST(XSetInt, GetFreeNumbersFillsTheGapsInStoredOrder) {
    const std::pair<Ints, Ints> cases[] = {
        {{2, 5, 6}, {1, 3, 4}}, {{}, {}}, {{3, 1}, {1, 2}}, {{-2, 1}, {-1, 0}}, {{-5, INT_MAX}, {}}};
    BoxRecorder recorder;
    for (const auto& [values, free] : cases) {
        XSetInt out;
        IntsOf(values).GetFreeNumbers(out);
        EXPECT_EQ(ValuesOf(out), free);
    }
    ASSERT_EQ(recorder.boxes.size(), 1U) << "the last has more gaps than a set has positions";
    EXPECT_EQ(recorder.boxes[0].text, L"Exception in 'XSet<T>::Insert()'");
    XSetInt self = IntsOf({2, 4});
    self.GetFreeNumbers(self);
    EXPECT_EQ(ValuesOf(self), (Ints{2, 4, 1, 3}));
}

TEST(XSetInt, NumbersAreReusedAndThenCountedUp) {
    XSetInt set;
    EXPECT_EQ(set.GetNextNumber(), 0);
    set.BuildSet(L"3,8");
    for (const int next : {3, 8, 9}) EXPECT_EQ(set.GetNextNumber(), next);
    set.SetMax(INT_MAX);
    EXPECT_EQ(set.GetNextNumber(), INT_MIN) << "wraps";
    set.CalcMax();
    EXPECT_EQ(set.GetMax(), 0);
    set.BuildSet(L"2,4");
    for (const auto& [max, sorted, expected] : {std::tuple{10, false, 10}, {1, false, 4}, {10, true, 4}}) {
        set.SetMax(max);
        if (sorted) set.Sort();
        set.CalcMax();
        EXPECT_EQ(set.GetMax(), expected);
    }
}

TEST(XSetInt, UnionAppendsAndSorts) {
    XSetInt other, set = IntsOf({3, 1});
    other.BuildSet(L"5,1");
    set.Union(other);
    set.Union(nullptr);
    EXPECT_EQ(ValuesOf(set), (Ints{1, 1, 3, 5}));
    EXPECT_EQ(std::tuple(set.GetMax(), XSetInt(&other).GetMax(), XSetInt(nullptr).GetMax()), std::tuple(5, 5, -1));
    set.Union(&other);
    set.Union(set);
    EXPECT_EQ(set.Size(), 12);
}
