#include "veltrane/collections/xmap.h"

#include <array>
#include <memory>

#include "support/support.h"

using namespace veltrane;
using namespace veltrane::detail;

using Ints = std::vector<int>;

TEST(XMapInt2CString, InsertStoresOnlyWhatGetDoesNotGiveYet) {
    XMapInt2CString map;
    map.Insert(3, L"");
    EXPECT_EQ(map.Size(), 0) << "an empty text makes no entry";
    map.Insert(3, L"c");
    map.Insert(3, L"d");
    EXPECT_EQ(map.Get(3), L"d");
    map.Insert(3, L"");
    EXPECT_EQ(map.Get(3), L"");
    EXPECT_EQ(map.Size(), 1) << "but empties one";
}

TEST(XMapInt2CString, TheCursorWalksKeysInOrderAndStaysAtTheEnd) {
    XMapInt2CString map;
    CString text = L"?";
    EXPECT_EQ(map.GetNext(text), -1) << "before GetFirst";
    EXPECT_EQ(text, L"");
    for (const int key : {5, 1, 3}) map.Insert(key, FormatText(L"%d", key));
    Ints keys = {map.GetFirst(text)};
    while (keys.back() >= 0) keys.push_back(map.GetNext(text));
    EXPECT_EQ(keys, (Ints{1, 3, 5, -1}));
    EXPECT_EQ(text, L"");
    EXPECT_EQ(map.GetNext(text), -1);

    map.GetFirst(text);
    map.Insert(2, L"2");
    EXPECT_EQ(map.GetNext(text), 2) << "insertion does not move the cursor";
    XMapInt2CString copy = map;
    EXPECT_EQ(copy.GetNext(text), -1) << "a copy starts without cursor";
    copy = map;
    EXPECT_EQ(copy.GetNext(text), -1);
    EXPECT_EQ(map.Find(L"5"), 5);
    EXPECT_EQ(map.GetNext(text), 3) << "nor does searching for a text";
    map.Clear();
    EXPECT_EQ(map.GetNext(text), -1) << "after Clear";
}

TEST(XMapInt2CString, FindGivesTheSmallestKeyAndGetMaxKeyEndsAtTheFirstNegativeOne) {
    XMapInt2CString map;
    EXPECT_EQ(map.GetMaxKey(), -1);
    for (const auto& [key, text] : {std::pair{9, L"a"}, {4, L"a"}, {0, L"A"}}) map.Insert(key, text);
    EXPECT_EQ(map.Find(L"a"), 4);
    EXPECT_EQ(map.Find(L"b"), -1);
    EXPECT_EQ(map.GetMaxKey(), 9);
    CString text;
    EXPECT_EQ(map.GetNext(text), -1) << "the cursor is at the end";
    map.Insert(-2, L"x");
    EXPECT_EQ(map.GetMaxKey(), -1);
}

TEST(XMapInt2SetOfInt, BuildsASetOfAListOncePerKey) {
    XMapInt2SetOfInt map;
    map.Insert(2, L"5,7");
    const XException error = ErrorOf([&] { map.Insert(2, L"8"); });
    EXPECT_EQ(error.GetMessage(), L"There are already classes defined as 'obsolete' in database '2'");
    EXPECT_EQ(error.GetLocation().Find(L"<XMapInt2SetOfInt::Insert> in [xsetint], line ["), 0);
    ASSERT_NE(map.Find(2), nullptr);
    EXPECT_EQ(map.Find(2)->Size(), 2);
    map.Insert(3, L"0, x");
    EXPECT_EQ(map.Find(3), nullptr);
}

TEST(XMapInt2SetOfInt, TakesSetsOverAndGivesReplacedOnesBack) {
    XMapInt2SetOfInt map;
    const auto first = std::make_unique<XSetInt>();
    auto* second = new XSetInt;  // the leak check of the sanitizer build watches over it
    map.Insert(4, first.get());
    map.Insert(4, second);
    map.Insert(4, nullptr);
    EXPECT_EQ(map.Find(4), second);
}

TEST(XMapInt2IntTupel, KeepsNumbersButReplacesZeros) {
    using Entry = std::array<int, 3>;
    XMapInt2IntTupel map;
    for (const auto& [key, first, second] : {Entry{1, 2, 3}, {1, 9, 9}, {5, 0, 0}, {5, 0, 4}, {5, 9, 9}, {7, 0, 0}}) {
        map.Insert(key, first, second);
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
