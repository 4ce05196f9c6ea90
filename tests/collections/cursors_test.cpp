#include <ranges>
#include <sstream>

#include "support/support.h"
#include "veltrane/collections/xmap.h"
#include "veltrane/collections/xsetstring.h"
#include "veltrane/collections/xstringpair.h"
#include "veltrane/collections/xstringvector.h"

using Pairs = std::vector<std::pair<int, CString>>;

static XMapInt2CString MapOf(const Pairs& pairs) {
    XMapInt2CString map;
    for (const auto& [key, text] : pairs) map.Insert(key, text);
    return map;
}

TEST(XMapInt2CString, WalksInOrderWhatGetDidNotGiveBefore) {
    XMapInt2CString map = MapOf({{5, L"e"}, {1, L"a"}, {3, L"c"}, {3, L"d"}, {1, L""}, {7, L""}});
    CString text = L"?";
    Pairs met{{map.GetNext(text), text}};
    for (int key = map.GetFirst(text); met.size() < 6; key = map.GetNext(text)) met.emplace_back(key, text);
    EXPECT_EQ(met, (Pairs{{-1, L""}, {1, L""}, {3, L"d"}, {5, L"e"}, {-1, L""}, {-1, L""}}));
    EXPECT_EQ(map.Size(), 3);
}

TEST(XMapInt2CString, TheCursorIsMovedByWalksAndGetMaxKeyAlone) {
    XMapInt2CString map = MapOf({{1, L"1"}, {4, L"a"}, {3, L"a"}});
    CString text;
    map.GetFirst(text);
    map.Insert(2, L"2");
    EXPECT_EQ(map.GetNext(text), 2);
    EXPECT_EQ(std::pair(map.Find(L"a"), map.Find(L"A")), std::pair(3, -1));
    XMapInt2CString copy = map;
    EXPECT_EQ(copy.GetNext(text), -1) << "a copy starts without cursor";
    copy = map;
    EXPECT_EQ(copy.GetNext(text), -1);
    EXPECT_EQ(map.GetNext(text), 3);
    map.Clear();
    EXPECT_EQ(map.GetNext(text), -1);
    EXPECT_EQ(copy.GetMaxKey(), 4);
    EXPECT_EQ(copy.GetNext(text), -1) << "the cursor is at the end";
    copy.Insert(-2, L"x");
    EXPECT_EQ(copy.GetMaxKey(), -1);
}

TEST(XMapInt2SetOfInt, MakesASetOfAListOncePerKeyAndAdoptsSets) {
    XMapInt2SetOfInt map;
    map.Insert(2, L"5,7");
    const XException error = ErrorOf([&] { map.Insert(2, L"8"); });
    EXPECT_EQ(error.GetMessage(), L"There are already classes defined as 'obsolete' in database '2'");
    EXPECT_EQ(error.GetLocation().Find(L"<XMapInt2SetOfInt::Insert> in [xsetint], line ["), 0);
    const std::unique_ptr<XSetInt> first{map.Find(2)};
    EXPECT_EQ(first->Size(), 2);
    map.Insert(3, L"0, x");
    EXPECT_EQ(map.Find(3), nullptr);
    auto* const second = new XSetInt;  // the sanitizer build checks that neither leaks
    map.Insert(2, second);
    map.Insert(2, nullptr);
    EXPECT_EQ(map.Find(2), second);
}

TEST(XMapInt2IntTupel, KeepsNumbersButReplacesZeros) {
    XMapInt2IntTupel map;
    using Entry = std::tuple<int, int, int>;
    for (const auto& [key, a, b] : {Entry{1, 2, 3}, {5, 0, 0}, {5, 0, 4}, {5, 9, 9}, {7, 0, 0}}) map.Insert(key, a, b);
    XMapInt2IntTupel::IntTupel tupel;
    std::vector<Entry> met;
    for (int key = map.GetFirst(tupel); met.size() < 4; key = map.GetNext(tupel)) {
        met.emplace_back(key, tupel.nFirst, tupel.nSecond);
    }
    EXPECT_EQ(met, (std::vector<Entry>{{1, 2, 3}, {5, 0, 4}, {7, 0, 0}, {-1, 0, 0}}));
    map.Clear();
    EXPECT_EQ(map.GetFirst(tupel), -1);
}

TEST(XStringVector, TheCursorMeetsEachStringAndStaysAtTheEnd) {
    XStringVector vector;
    for (const wchar_t* item : {L"a", L"b"}) vector.Append(item);
    CString text = L"kept";
    EXPECT_FALSE(vector.Next(text)) << "before First";
    EXPECT_EQ(text, L"kept");
    EXPECT_TRUE(vector.First(text) && vector.Next(text));
    for (int i = 0; i < 2; ++i) EXPECT_FALSE(vector.Next(text));
    EXPECT_EQ(text, L"b");
    vector.First(text);
    vector.Append(text);
    EXPECT_FALSE(vector.Next(text)) << "after Append";
    vector.First(text);
    vector.Clear();
    EXPECT_FALSE(vector.Next(text) || vector.First(text) || vector.GetSize()) << "after Clear";
}

TEST(XStringVector, CompareGivesOneForALongerVector) {
    XStringVector one, two, other;
    one.Append(L"a");
    for (const wchar_t* item : {L"A", L"B"}) two.Append(item);
    for (const wchar_t* item : {L"A", L"a"}) other.Append(item);
    EXPECT_EQ(one.Compare(nullptr), 1) << "more than nothing";
    EXPECT_EQ(std::pair(one.Compare(&two), two.FullCompare(&one)), std::pair(-1, 1));
    EXPECT_EQ(std::tuple(two.Compare(&other), other.Compare(&two), two.Compare(&two)), std::tuple(-1, 1, 0));
}

TEST(XStringMap, WalksUpperCaseFirstAndKeepsTheFirstVectorOfAKey) {
    XStringMap map;
    EXPECT_FALSE(map.Next() || map.First());
    for (const wchar_t* key : {L"a", L"B"}) map.Insert(key, new XStringVector);
    CString keys;
    for (bool more = map.First(); more; more = map.Next()) keys += map.GetActKey();
    EXPECT_EQ(keys, L"Ba");
    EXPECT_TRUE(map.Find(L"a"));
    const XStringVector* first = map.GetActValue();
    XStringVector second;
    map.Insert(L"a", &second);
    EXPECT_EQ(map.GetActValue(), first);
    EXPECT_EQ(map.GetSize(), 2);
    EXPECT_FALSE(map.Next() || map.Find(L"A") || map.Next());
    EXPECT_EQ(map.GetActKey(), L"");
    EXPECT_EQ(map.GetActValue(), nullptr);
}

TEST(Ranges, GoOverWhatTheCursorsGoOverAndLeaveThemAlone) {
    static_assert(std::ranges::contiguous_range<const CString> && std::ranges::forward_range<const XSet<int>>);
    static_assert(std::ranges::forward_range<const XSetStringPairs> && std::ranges::input_range<const XStringMap>);
    XMapInt2CString map = MapOf({{4, L"d"}, {2, L"b"}});
    CString text;
    map.GetFirst(text);
    XSetString seen;
    for (const auto& entry : map) seen.Insert(entry.second, /*unique*/ false);
    EXPECT_EQ(map.GetNext(text), 4);
    XSetStringPairs pairs;
    for (const CString& value : seen) pairs.InsertPair(value, value);
    pairs.Insert(nullptr);
    std::ostringstream out;
    for (const XStringPair& pair : pairs) out << pair.GetFirst() << CString{L"ä\xDCFF|"};
    EXPECT_EQ(out.str(), "bä\xFF|dä\xFF|ä\xFF|") << "null is read as a default one";
}
