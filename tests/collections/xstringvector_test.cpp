#include "veltrane/collections/xstringvector.h"

#include "support/support.h"

namespace {

XStringVector VectorOf(const std::vector<CString>& texts) {
    XStringVector vector;
    for (const CString& text : texts) vector.Append(text);
    return vector;
}

}  // namespace

TEST(XStringVector, TheCursorMeetsEachStringAndStaysAtTheEnd) {
    XStringVector vector = VectorOf({L"a", L"b"});
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
    EXPECT_FALSE(vector.Next(text) || vector.First(text)) << "after Clear";
    EXPECT_EQ(vector.GetSize(), 0);
}

TEST(XStringVector, CompareGivesOneForALongerVector) {
    const std::pair<std::vector<CString>, std::vector<CString>> cases[] = {
        {{L"z"}, {L"a", L"b", L"c"}}, {{L"a", L"B"}, {L"a", L"b"}}, {{L"a", L"b"}, {L"b", L"a"}}};
    for (const auto& [less, more] : cases) {
        const XStringVector a = VectorOf(less), b = VectorOf(more);
        EXPECT_EQ(a.Compare(&b), -1);
        EXPECT_EQ(b.FullCompare(&a), 1);
        EXPECT_EQ(a.Compare(&a), 0);
    }
    EXPECT_EQ(XStringVector{}.Compare(nullptr), 1) << "more than nothing";
}

TEST(XStringMap, WalksUpperCaseFirstAndKeepsTheFirstVectorOfAKey) {
    XStringMap map;
    EXPECT_FALSE(map.Next() || map.First());
    for (const wchar_t* key : {L"a", L"B"}) map.Insert(key, new XStringVector);
    EXPECT_TRUE(map.First());
    EXPECT_EQ(map.GetActKey(), L"B");
    EXPECT_TRUE(map.Next());
    EXPECT_EQ(map.GetActKey(), L"a");
    const XStringVector* first = map.GetActValue();
    XStringVector second;
    map.Insert(L"a", &second);
    EXPECT_EQ(map.GetActValue(), first);
    EXPECT_EQ(map.GetSize(), 2);
    for (int i = 0; i < 2; ++i) EXPECT_FALSE(map.Next());
    EXPECT_TRUE(map.Find(L"a"));
    EXPECT_FALSE(map.Find(L"A"));
    EXPECT_EQ(map.GetActKey(), L"");
    EXPECT_EQ(map.GetActValue(), nullptr);
}
