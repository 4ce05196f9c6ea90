#include "veltrane/collections/xsetint.h"

#include "collections/sets.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

XSetInt Built(const wchar_t* list) {
    XSetInt set;
    set.BuildSet(list);
    return set;
}

}  // namespace

TEST(XSetInt, BuildSetTakesTheNumbersAboveZero) {
    struct {
        const char* what;
        const wchar_t* text;
        Ints values;
    } const cases[] = {
        {"words, zero, negative numbers and empty pieces are skipped", L" 12, 0,-3, 7 ,abc,7,,", {12, 7, 7}},
        {"no ranges", L"3-5", {3}},
        {"wide white space", L"\u00A0\u30004 ", {4}},
        {"beyond int", L"99999999999", {INT_MAX}},
        {"nothing", L"", {}},
    };
    for (const auto& [what, text, values] : cases) EXPECT_EQ(ValuesOf(Built(text)), values) << what;
    XSetInt set = Built(L"9");
    set.BuildSet(L"12,7");
    EXPECT_EQ(ValuesOf(set), (Ints{9, 12, 7})) << "not cleared first";
    EXPECT_EQ(set.GetMax(), 12);
}

TEST(XSetInt, GetFreeNumbersFillsTheGapsInStoredOrder) {
    struct {
        Ints values;
        Ints free;
    } const cases[] = {{{2, 5, 6}, {1, 3, 4}}, {{}, {}}, {{3, 1}, {1, 2}}, {{-2, 1}, {-1, 0}}};
    for (const auto& [values, free] : cases) {
        XSetInt out;
        SetOf<int, XSetInt>(values).GetFreeNumbers(out);
        EXPECT_EQ(ValuesOf(out), free);
    }
    BoxRecorder recorder;
    XSetInt none;
    SetOf<int, XSetInt>({-5, INT_MAX}).GetFreeNumbers(none);
    ASSERT_EQ(recorder.boxes.size(), 1U) << "more numbers than positions";
    EXPECT_EQ(recorder.boxes[0].text, L"Exception in 'XSet<T>::Insert()'");
    EXPECT_EQ(none.Size(), 0);

    XSetInt self = Built(L"2,4");
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
    set.SetMax(10);
    set.CalcMax();
    EXPECT_EQ(set.GetMax(), 10);
    set.Sort();
    set.CalcMax();
    EXPECT_EQ(set.GetMax(), 4) << "the sorted mark is believed";
}

TEST(XSetInt, UnionAppendsAndSorts) {
    const XSetInt other = Built(L"5,1");
    XSetInt set = Built(L"3,1");
    set.Union(other);
    set.Union(nullptr);
    set.Union(&other);
    EXPECT_EQ(ValuesOf(set), (Ints{1, 1, 1, 3, 5, 5}));
    EXPECT_EQ(set.GetMax(), 5);
    set.Union(set);
    EXPECT_EQ(set.Size(), 12);
    EXPECT_EQ(XSetInt(&other).GetMax(), 5);
    EXPECT_EQ(XSetInt(nullptr).GetMax(), -1);
}
