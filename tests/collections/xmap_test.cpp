#include "veltrane/collections/xmap.h"

#include "support/support.h"

namespace {

using Pairs = std::vector<std::pair<int, CString>>;

XMapInt2CString MapOf(const Pairs& pairs) {
    XMapInt2CString map;
    for (const auto& [key, text] : pairs) map.Insert(key, text);
    return map;
}

}  // namespace

TEST(XMapInt2CString, WalksInOrderWhatGetDidNotGiveBefore) {
    const std::pair<Pairs, Pairs> cases[] = {
        {{{3, L""}}, {}},
        {{{3, L"c"}, {3, L"d"}}, {{3, L"d"}}},
        {{{3, L"c"}, {3, L""}}, {{3, L""}}},
        {{{5, L"e"}, {1, L"a"}, {3, L"c"}}, {{1, L"a"}, {3, L"c"}, {5, L"e"}}},
    };
    for (const auto& [inserted, expected] : cases) {
        XMapInt2CString map = MapOf(inserted);
        CString text = L"?";
        EXPECT_EQ(map.GetNext(text), -1) << "before GetFirst";
        EXPECT_EQ(text, L"");
        Pairs met;
        for (int key = map.GetFirst(text); key >= 0; key = map.GetNext(text)) met.emplace_back(key, text);
        EXPECT_EQ(met, expected);
        EXPECT_EQ(map.Size(), static_cast<int>(expected.size()));
        EXPECT_EQ(text, L"");
        EXPECT_EQ(map.GetNext(text), -1) << "stays at the end";
    }
}

TEST(XMapInt2CString, TheCursorIsMovedByWalksAlone) {
    XMapInt2CString map = MapOf({{1, L"1"}, {3, L"3"}});
    CString text;
    map.GetFirst(text);
    map.Insert(2, L"2");
    EXPECT_EQ(map.GetNext(text), 2);
    EXPECT_EQ(map.Find(L"3"), 3);
    XMapInt2CString copy = map;
    EXPECT_EQ(copy.GetNext(text), -1) << "a copy starts without cursor";
    copy = map;
    EXPECT_EQ(copy.GetNext(text), -1);
    EXPECT_EQ(map.GetNext(text), 3);
    map.Clear();
    EXPECT_EQ(map.GetNext(text), -1);
}

TEST(XMapInt2CString, FindGivesTheSmallestKeyAndGetMaxKeyTheLargest) {
    XMapInt2CString map = MapOf({{9, L"a"}, {4, L"a"}, {0, L"A"}});
    EXPECT_EQ(map.Find(L"a"), 4);
    EXPECT_EQ(map.Find(L"b"), -1);
    EXPECT_EQ(map.GetMaxKey(), 9);
    CString text;
    EXPECT_EQ(map.GetNext(text), -1) << "the cursor is at the end";
    map.Insert(-2, L"x");
    EXPECT_EQ(map.GetMaxKey(), -1);
}

TEST(XMapInt2SetOfInt, MakesASetOfAListOncePerKeyAndTakesSetsOver) {
    XMapInt2SetOfInt map;
    map.Insert(2, L"5,7");
    const XException error = ErrorOf([&] { map.Insert(2, L"8"); });
    EXPECT_EQ(error.GetMessage(), L"There are already classes defined as 'obsolete' in database '2'");
    EXPECT_EQ(error.GetLocation().Find(L"<XMapInt2SetOfInt::Insert> in [xsetint], line ["), 0);
    XSetInt* const first = map.Find(2);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->Size(), 2);
    map.Insert(3, L"0, x");
    EXPECT_EQ(map.Find(3), nullptr);
    auto* const second = new XSetInt;  // the leak check of the sanitizer build watches over both
    map.Insert(2, second);
    map.Insert(2, nullptr);
    EXPECT_EQ(map.Find(2), second);
    delete first;
}

TEST(XMapInt2IntTupel, KeepsNumbersButReplacesZeros) {
    using Entry = std::vector<int>;
    XMapInt2IntTupel map;
    for (const Entry& entry : {Entry{1, 2, 3}, {1, 9, 9}, {5, 0, 0}, {5, 0, 4}, {5, 9, 9}, {7, 0, 0}}) {
        map.Insert(entry[0], entry[1], entry[2]);
    }
    XMapInt2IntTupel::IntTupel tupel;
    std::vector<Entry> met;
    for (int key = map.GetFirst(tupel); met.size() < 4; key = map.GetNext(tupel)) {
        met.push_back({key, tupel.nFirst, tupel.nSecond});
    }
    EXPECT_EQ(met, (std::vector<Entry>{{1, 2, 3}, {5, 0, 4}, {7, 0, 0}, {-1, 0, 0}}));
    map.Clear();
    EXPECT_EQ(map.GetFirst(tupel), -1);
}
