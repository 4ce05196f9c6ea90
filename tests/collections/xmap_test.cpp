#include "collections/xmap.h"

#include "support/support.h"

namespace {

// All keys and texts that a walk meets, the end marker included.
template <class Map, class Value>
std::vector<int> Walk(Map& map, Value& last) {
    std::vector<int> keys = {map.GetFirst(last)};
    while (keys.back() >= 0) keys.push_back(map.GetNext(last));
    return keys;
}

using Ints = std::vector<int>;

}  // namespace

TEST(XMapInt2CString, InsertStoresOnlyWhatGetDoesNotGiveYet) {
    XMapInt2CString map;
    map.Insert(3, L"");
    EXPECT_EQ(map.Size(), 0) << "an empty text makes no entry";
    map.Insert(3, L"c");
    map.Insert(3, L"d");
    EXPECT_EQ(map.Get(3), L"d");
    EXPECT_EQ(map.Get(7), L"");
    map.Insert(3, L"");
    EXPECT_EQ(map.Size(), 1) << "but empties one";
}

TEST(XMapInt2CString, TheCursorWalksKeysInOrderAndStaysAtTheEnd) {
    XMapInt2CString map;
    CString text = L"?";
    EXPECT_EQ(map.GetNext(text), -1) << "before GetFirst";
    EXPECT_EQ(text, L"");
    for (const int key : {5, 1, 3}) map.Insert(key, FormatText(L"%d", key));
    EXPECT_EQ(Walk(map, text), (Ints{1, 3, 5, -1}));
    EXPECT_EQ(text, L"");
    EXPECT_EQ(map.GetNext(text), -1);

    map.GetFirst(text);
    map.Insert(2, L"2");
    EXPECT_EQ(map.GetNext(text), 2) << "insertion does not move the cursor";
    XMapInt2CString copy = map;
    EXPECT_EQ(copy.GetNext(text), -1) << "a copy starts without cursor";
    copy = map;
    EXPECT_EQ(copy.GetNext(text), -1);
    EXPECT_EQ(map.GetNext(text), 3);
    map.Clear();
    EXPECT_EQ(map.GetNext(text), -1) << "after Clear";
}

TEST(XMapInt2CString, FindGivesTheSmallestKeyAndLeavesTheCursor) {
    XMapInt2CString map;
    for (const auto& [key, text] : {std::pair{4, L"a"}, {1, L"a"}, {2, L"A"}}) map.Insert(key, text);
    CString text;
    map.GetFirst(text);
    EXPECT_EQ(map.Find(L"a"), 1);
    EXPECT_EQ(map.Find(L"A"), 2);
    EXPECT_EQ(map.Find(L"b"), -1);
    EXPECT_EQ(map.GetNext(text), 2);
}

TEST(XMapInt2CString, GetMaxKeyEndsAtTheFirstNegativeKey) {
    XMapInt2CString map;
    EXPECT_EQ(map.GetMaxKey(), -1);
    for (const int key : {0, 9, 4}) map.Insert(key, L"x");
    EXPECT_EQ(map.GetMaxKey(), 9);
    CString text;
    EXPECT_EQ(map.GetNext(text), -1) << "the cursor is at the end";
    map.Insert(-2, L"x");
    EXPECT_EQ(map.GetMaxKey(), -1);
}

TEST(XMapInt2SetOfInt, BuildsASetOfAListOncePerKey) {
    XMapInt2SetOfInt map;
    map.Insert(2, L"5,7");
    ASSERT_NE(map.Find(2), nullptr);
    EXPECT_EQ(map.Find(2)->GetConstRefAt(1), 7);
    const XException error = ErrorOf([&] { map.Insert(2, L"8"); });
    EXPECT_EQ(error.GetNumber(), -1);
    EXPECT_EQ(error.GetMessage(), L"There are already classes defined as 'obsolete' in database '2'");
    EXPECT_EQ(error.GetLocation().Find(L"<XMapInt2SetOfInt::Insert> in [xsetint], line ["), 0);
    EXPECT_EQ(map.Find(2)->Size(), 2);
    map.Insert(3, L"0, x");
    EXPECT_EQ(map.Find(3), nullptr);
}

TEST(XMapInt2SetOfInt, TakesSetsOverAndGivesReplacedOnesBack) {
    XMapInt2SetOfInt map;
    auto* first = new XSetInt;
    auto* second = new XSetInt;
    map.Insert(4, nullptr);
    EXPECT_EQ(map.Find(4), nullptr);
    map.Insert(4, first);
    map.Insert(4, second);
    EXPECT_EQ(map.Find(4), second);
    delete first;  // the leak check of the sanitizer build watches over the other one
}

TEST(XMapInt2IntTupel, KeepsNumbersButReplacesZeros) {
    XMapInt2IntTupel map;
    map.Insert(1, 2, 3);
    map.Insert(1, 9, 9);
    map.Insert(5, 0, 0);
    XMapInt2IntTupel::IntTupel tupel;
    EXPECT_EQ(Walk(map, tupel), (Ints{1, 5, -1})) << "zeros are an entry";
    map.Insert(5, 0, 4);
    EXPECT_EQ(map.GetFirst(tupel), 1);
    EXPECT_EQ(std::pair(tupel.nFirst, tupel.nSecond), std::pair(2, 3));
    EXPECT_EQ(map.GetNext(tupel), 5);
    EXPECT_EQ(std::pair(tupel.nFirst, tupel.nSecond), std::pair(0, 4));
    EXPECT_EQ(map.GetNext(tupel), -1);
    EXPECT_EQ(std::pair(tupel.nFirst, tupel.nSecond), std::pair(0, 0));
    map.Clear();
    EXPECT_EQ(map.GetFirst(tupel), -1);
}
