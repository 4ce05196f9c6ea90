#include "collections/xstringvector.h"

#include "support/support.h"

namespace {

XStringVector VectorOf(const std::vector<CString>& texts) {
    XStringVector vector;
    for (const CString& text : texts) vector.Append(text);
    return vector;
}

}  // namespace

TEST(XStringVector, TheCursorMeetsEachStringAndStaysAtTheEnd) {
    XStringVector vector;
    CString text = L"kept";
    EXPECT_FALSE(vector.First(text));
    vector = VectorOf({L"a", L"b"});
    EXPECT_FALSE(vector.Next(text)) << "before First";
    EXPECT_EQ(text, L"kept");
    EXPECT_TRUE(vector.First(text));
    EXPECT_TRUE(vector.Next(text));
    EXPECT_EQ(text, L"b");
    EXPECT_FALSE(vector.Next(text));
    EXPECT_FALSE(vector.Next(text));
    EXPECT_EQ(text, L"b");

    vector.First(text);
    vector.Append(text);
    EXPECT_FALSE(vector.Next(text)) << "after Append";
    vector.First(text);
    vector.Clear();
    EXPECT_FALSE(vector.Next(text)) << "after Clear";
    EXPECT_EQ(vector.GetSize(), 0);
}

TEST(XStringVector, CompareGivesOneForALongerVector) {
    struct {
        std::vector<CString> left;
        std::vector<CString> right;
        int order;
    } const cases[] = {
        {{L"a", L"b", L"c"}, {L"a"}, 1},
        {{L"a"}, {L"z", L"z", L"z"}, -1},
        {{L"a", L"B"}, {L"a", L"b"}, -1},
        {{L"b"}, {L"a"}, 1},
        {{L"a"}, {L"a"}, 0},
    };
    for (const auto& [left, right, order] : cases) {
        const XStringVector other = VectorOf(right);
        EXPECT_EQ(VectorOf(left).Compare(&other), order);
        EXPECT_EQ(VectorOf(left).FullCompare(&other), order);
    }
    EXPECT_EQ(XStringVector{}.Compare(nullptr), 1) << "more than nothing";
}

TEST(XStringMap, TheFirstVectorOfAKeyStays) {
    XStringMap map;
    auto* first = new XStringVector;
    XStringVector second;
    map.Insert(L"k", first);
    map.Insert(L"k", &second);
    EXPECT_TRUE(map.Find(L"k"));
    EXPECT_EQ(map.GetActValue(), first);
    EXPECT_EQ(map.GetSize(), 1);
    EXPECT_FALSE(map.Find(L"K"));
    EXPECT_EQ(map.GetActKey(), L"");
    EXPECT_EQ(map.GetActValue(), nullptr);
}

TEST(XStringMap, WalksUpperCaseFirstAndStaysAtTheEnd) {
    XStringMap map;
    EXPECT_FALSE(map.Next());
    EXPECT_FALSE(map.First());
    map.Insert(L"a", new XStringVector);
    map.Insert(L"B", new XStringVector);
    ASSERT_TRUE(map.First());
    EXPECT_EQ(map.GetActKey(), L"B");
    ASSERT_TRUE(map.Next());
    EXPECT_EQ(map.GetActKey(), L"a");
    EXPECT_FALSE(map.Next());
    EXPECT_FALSE(map.Next());
    EXPECT_EQ(map.GetActKey(), L"");
}
