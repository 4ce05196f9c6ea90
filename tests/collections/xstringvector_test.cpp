#include "veltrane/collections/xstringvector.h"

#include "support/support.h"

using namespace veltrane;
using namespace veltrane::detail;

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
    for (int i = 0; i < 2; ++i) EXPECT_FALSE(vector.Next(text));
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
        std::vector<CString> less, more;
    } const cases[] = {{{L"z"}, {L"a", L"b", L"c"}}, {{L"a", L"B"}, {L"a", L"b"}}};
    for (const auto& [less, more] : cases) {
        const XStringVector a = VectorOf(less);
        const XStringVector b = VectorOf(more);
        EXPECT_EQ(a.Compare(&b), -1);
        EXPECT_EQ(b.FullCompare(&a), 1);
        EXPECT_EQ(a.Compare(&a), 0);
    }
    EXPECT_EQ(XStringVector{}.Compare(nullptr), 1) << "more than nothing";
}

TEST(XStringMap, WalksUpperCaseFirstAndKeepsTheFirstVectorOfAKey) {
    XStringMap map;
    EXPECT_FALSE(map.Next());
    for (const wchar_t* key : {L"a", L"B"}) map.Insert(key, new XStringVector);
    ASSERT_TRUE(map.First());
    EXPECT_EQ(map.GetActKey(), L"B");
    ASSERT_TRUE(map.Next());
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
