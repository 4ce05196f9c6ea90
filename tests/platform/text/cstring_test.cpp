#include "veltrane/platform/text/cstring.h"

#include <climits>
#include <stdexcept>

#include "support/support.h"

TEST(CString, HoldsItsElements) {
    EXPECT_EQ(CString{nullptr} + CString{0} + CString{static_cast<char*>(nullptr)} + CString(L'x', -3), L"");
    EXPECT_EQ(CString{"\xC3\xA4\xFFz"}, L"ä\xDCFFz");
    const CString text{std::wstring_view{L"a\0b", 3}};
    EXPECT_EQ(std::tuple(text.GetLength(), text[2], text[3], text[-1]), std::tuple(3, L'b', L'\0', L'\0'));
    EXPECT_FALSE(text == L"a");
    const CString path{L"C:"};
    EXPECT_EQ(L'<' + path + L'\\' + L"data" + CString{L".ini"}, L"<C:\\data.ini");
    EXPECT_TRUE(L"<" + path == L"<C:" && L"D:" > path);
    EXPECT_THROW(CString(L'a', CString::MAX_LENGTH + 1), std::length_error);
}

TEST(CString, ComparesInTheOrderOf16BitUnits) {
    constexpr wchar_t lead = 0xD83D;
    const std::tuple<const char*, std::wstring, std::wstring, int> cases[] = {
        {"a prefix is less", L"ab", L"abc", -1},
        {"the last pair is less than what stands after the surrogates", L"\x10FFFF", L"\xE000", -1},
        {"a pair is more than what stands before the surrogates", L"\x1F600", L"\xD7FF", 1},
        {"a lone lead is a prefix of its pair", {lead}, L"\x1F600", -1},
        {"after the lone lead the next unit decides: more", {lead, L'\xE000'}, L"\x1F600", 1},
        {"after the lone lead the next unit decides: less", {lead, L'a'}, L"\x1F600", -1},
        {"two lone halves are the pair", {lead, wchar_t{0xDE00}}, L"\x1F600", 0},
        {"pairs with the same lead", L"\x1F600z", L"\x1F601", -1},
    };
    for (const auto& [what, left, right, result] : cases) {
        EXPECT_EQ(CString{left}.Compare(right), result) << what;
        EXPECT_EQ(CString{right}.Compare(left), -result) << what;
        EXPECT_EQ(CString{left} <=> CString{right}, result <=> 0) << what;
        EXPECT_EQ(CString{left} == CString{right}, result == 0) << what;
        EXPECT_EQ(std::hash<CString>{}({left}) == std::hash<CString>{}({right}), result == 0) << what;
    }
    EXPECT_EQ(CString{L"NameÄ\x0416"}.CompareNoCase(L"nAMEä\x0436"), 0);
    EXPECT_EQ(CString{L"_"}.CompareNoCase(L"A"), -1) << "'_' stands before 'a', though after 'A'";
    EXPECT_EQ(CString{L"ß"}.CompareNoCase(L"ss"), 1);
}

TEST(CString, FindsFromAPositionOn) {
    const CString text{L"abcabc"};
    const std::tuple<const wchar_t*, int, int> cases[] = {{L"bc", 1, 1},   {L"bc", 2, 4},         {L"bc", 5, -1},
                                                          {L"bc", -1, -1}, {L"abcabcabc", 0, -1}, {L"", 3, 3},
                                                          {L"", 6, -1}};
    for (const auto& [wanted, start, found] : cases) EXPECT_EQ(text.Find(wanted, start), found) << start;
    for (const auto& [start, found] : {std::pair{3, 5}, {-1, -1}, {6, -1}}) EXPECT_EQ(text.Find(L'c', start), found);
    EXPECT_EQ(std::pair(text.ReverseFind(L'a'), CString{}.ReverseFind(L'a')), std::pair(3, -1));
    EXPECT_EQ(std::pair(text.FindOneOf(L"xcb"), text.FindOneOf(L"")), std::pair(1, -1));
}

TEST(CString, CutsOffAtBothEnds) {
    const CString text{L"abcd"};
    const std::pair<CString, const wchar_t*> cases[] = {
        {text.Left(2), L"ab"},   {text.Left(-1), L""},         {text.Left(INT_MAX), L"abcd"},
        {text.Right(2), L"cd"},  {text.Right(INT_MIN), L""},   {text.Right(INT_MAX), L"abcd"},
        {text.Mid(1), L"bcd"},   {text.Mid(4), L""},           {text.Mid(-1), L"abcd"},
        {text.Mid(1, 2), L"bc"}, {text.Mid(3, INT_MAX), L"d"}, {text.Mid(INT_MAX, INT_MAX), L""},
        {text.Mid(1, -2), L""},  {text.Mid(INT_MIN, 1), L"a"},
    };
    for (const auto& [cut, expected] : cases) EXPECT_EQ(cut, expected);
}

TEST(CString, ReplacesFromLeftToRightWithoutOverlap) {
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, int> cases[] = {
        {L"aaaaa", L"aa", L"b", L"bba", 2}, {L"ab", L"a", L"aa", L"aab", 1},      {L"abc", L"", L"x", L"abc", 0},
        {L"abc", L"d", L"x", L"abc", 0},    {L"a-b-c", L"-", nullptr, L"abc", 2},
    };
    for (const auto& [text, from, to, result, count] : cases) {
        CString target{text};
        EXPECT_EQ(target.Replace(from, to), count) << ToUtf8(from);
        EXPECT_EQ(target, result);
    }
    CString target{L"abab"};
    EXPECT_EQ(target.Replace(L'a', L'c'), 2);
    EXPECT_EQ(target.Replace(L"c", target), 2);
    EXPECT_EQ(target, L"cbcbbcbcbb") << "its own text is taken as it was before";
    target = L"abc";
    target += target;
    target += target.GetString() + 4;
    EXPECT_EQ(target.Trim(target.View().substr(0, 1)), L"bcabcbc");
    target = CString(L'a', 1 << 20);
    EXPECT_THROW(target.Replace(L"a", CString(L'b', 1 << 10)), std::length_error);
    EXPECT_TRUE(target == CString(L'a', 1 << 20)) << "a text that would be too long is refused";
}

TEST(CString, ChangesBlanksAndCase) {
    EXPECT_EQ(CString{L" \t\r\n\xA0\x3000 a b \x2028\x85"}.Trim(), L"a b");
    EXPECT_EQ(CString{L"  a "}.TrimLeft() + CString{L" b  "}.TrimRight(), L"a  b");
    EXPECT_EQ(CString{L"--a-b+-"}.Trim(L"+-"), L"a-b");
    EXPECT_EQ(CString{L"--a-"}.TrimLeft(L"-") + CString{L"-b--"}.TrimRight(L"-"), L"a--b");
    for (const CStringView all : {L"-", L"---"}) EXPECT_EQ(CString{all.View()}.TrimLeft(L"-").Trim(L"-"), L"");
    EXPECT_EQ(CString{L" a "}.Trim(L""), L" a ");
    EXPECT_EQ(CString{L"ABC ÄÖ 1\x0130\x212A\x1E9E"}.MakeLower(), L"abc äö 1ik\xDF");
    EXPECT_EQ(CString{L"abc äö\xDF \x10428"}.MakeUpper(), L"ABC ÄÖ\xDF \x10400");
}
