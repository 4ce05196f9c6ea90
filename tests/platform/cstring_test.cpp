#include "platform/cstring.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/support.h"

namespace {

TEST(CString, IsEmptyWithoutAText) {
    const wchar_t* const null = nullptr;
    EXPECT_EQ(CString{}, L"");
    EXPECT_EQ(CString{null}, L"");
    EXPECT_EQ(CString(L'x', 0), L"");
    EXPECT_EQ(CString(L'x', -3), L"");
    EXPECT_EQ(CString(L'x', 3), L"xxx");
}

TEST(CString, GivesNulOutsideTheText) {
    const CString text{L"ab"};
    EXPECT_EQ(text[0], L'a');
    EXPECT_EQ(text[1], L'b');
    EXPECT_EQ(text[2], L'\0');
    EXPECT_EQ(text[-1], L'\0');
}

TEST(CString, KeepsANulInside) {
    const CString text{std::wstring_view{L"a\0b", 3}};
    EXPECT_EQ(text.GetLength(), 3);
    EXPECT_FALSE(text == L"a");
    EXPECT_EQ(text.Find(L'b'), 2);
}

TEST(CString, ComparesInTheOrderOf16BitUnits) {
    struct {
        const char* what;
        std::wstring left;
        std::wstring right;
        int result;
    } const cases[] = {
        {"equal", L"abc", L"abc", 0},
        {"a prefix is less", L"ab", L"abc", -1},
        {"case counts", L"B", L"a", -1},
        {"both small", L"\xE000", L"\xFFFF", -1},
        {"both above", L"\x1F600", L"\x1F601", -1},
        {"a pair is less than what stands behind the surrogates", L"\x1F600", L"\xE000", -1},
        {"and less than the last unit", L"\x10FFFF", L"\xFFFF", -1},
        {"a pair is more than what stands before the surrogates", L"\x1F600", L"\xD7FF", 1},
        {"a lone lead is a prefix of its pair", {wchar_t{0xD83D}}, L"\x1F600", -1},
        {"behind the lone lead the next unit decides: more", {wchar_t{0xD83D}, L'\xE000'}, L"\x1F600", 1},
        {"behind the lone lead the next unit decides: less", {wchar_t{0xD83D}, L'a'}, L"\x1F600", -1},
        {"two lone halves are the pair", {wchar_t{0xD83D}, wchar_t{0xDE00}}, L"\x1F600", 0},
        {"pairs with the same lead", L"\x1F600z", L"\x1F601", -1},
    };
    for (const auto& [what, left, right, result] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(CString{left}.Compare(right), result);
        EXPECT_EQ(CString{right}.Compare(left), -result);
        EXPECT_EQ(CString{left} == CString{right}, result == 0);
        EXPECT_EQ(CString{left} < CString{right}, result < 0);
    }
}

TEST(CString, ComparesWithoutCaseInLowerCase) {
    EXPECT_EQ(CString{L"Name"}.CompareNoCase(L"nAME"), 0);
    EXPECT_EQ(CString{L"ÄÖ\x0416"}.CompareNoCase(L"äö\x0436"), 0);
    EXPECT_EQ(CString{L"_"}.CompareNoCase(L"A"), -1) << "'_' stands before 'a', though behind 'A'";
    EXPECT_EQ(CString{L"ß"}.CompareNoCase(L"ss"), 1);
    EXPECT_EQ(CString{L"ab"}.CompareNoCase(L"ABC"), -1);
}

TEST(CString, FindsFromAPositionOn) {
    const CString text{L"abcabc"};
    struct {
        const wchar_t* wanted;
        int start;
        int found;
    } const cases[] = {
        {L"bc", 0, 1},   {L"bc", 1, 1},         {L"bc", 2, 4}, {L"bc", 5, -1}, {L"x", 0, -1}, {L"bc", -1, -1},
        {L"bc", 99, -1}, {L"abcabcabc", 0, -1}, {L"", 0, 0},   {L"", 3, 3},    {L"", 7, -1},  {L"", -1, -1},
    };
    for (const auto& [wanted, start, found] : cases) {
        SCOPED_TRACE(testing::Message() << ToUtf8(CString{wanted}) << " from " << start);
        EXPECT_EQ(text.Find(wanted, start), found);
    }
    EXPECT_EQ(text.Find(L'c', 3), 5);
    EXPECT_EQ(text.Find(L'c', -1), -1);
    EXPECT_EQ(text.Find(L'c', 6), -1);
    EXPECT_EQ(text.ReverseFind(L'a'), 3);
    EXPECT_EQ(text.ReverseFind(L'x'), -1);
    EXPECT_EQ(text.FindOneOf(L"xcb"), 1);
    EXPECT_EQ(text.FindOneOf(L""), -1);
    EXPECT_EQ(CString{}.ReverseFind(L'a'), -1);
}

TEST(CString, CutsAtBothEnds) {
    constexpr int least = -2147483647 - 1;
    constexpr int most = 2147483647;
    const CString text{L"abcd"};
    struct {
        CString cut;
        const wchar_t* expected;
    } const cases[] = {
        {text.Left(2), L"ab"},      {text.Left(0), L""},    {text.Left(-1), L""},      {text.Left(most), L"abcd"},
        {text.Right(2), L"cd"},     {text.Right(0), L""},   {text.Right(least), L""},  {text.Right(most), L"abcd"},
        {text.Mid(1), L"bcd"},      {text.Mid(4), L""},     {text.Mid(99), L""},       {text.Mid(-1), L"abcd"},
        {text.Mid(1, 2), L"bc"},    {text.Mid(1, -2), L""}, {text.Mid(3, most), L"d"}, {text.Mid(most, most), L""},
        {text.Mid(least, 1), L"a"},
    };
    for (const auto& [cut, expected] : cases) EXPECT_EQ(cut, expected);
}

TEST(CString, ReplacesFromLeftToRightWithoutOverlap) {
    struct {
        const char* what;
        const wchar_t* text;
        const wchar_t* from;
        const wchar_t* to;
        const wchar_t* result;
        int count;
    } const cases[] = {
        {"overlapping matches", L"aaaaa", L"aa", L"b", L"bba", 2},
        {"what was put in is not looked at", L"ab", L"a", L"aa", L"aab", 1},
        {"longer", L"%x%x%", L"%", L"[percent]", L"[percent]x[percent]x[percent]", 3},
        {"removal", L"a-b-c", L"-", L"", L"abc", 2},
        {"the empty text", L"abc", L"", L"x", L"abc", 0},
        {"nothing found", L"abc", L"d", L"x", L"abc", 0},
        {"null is empty", L"abc", L"b", nullptr, L"ac", 1},
    };
    for (const auto& [what, text, from, to, result, count] : cases) {
        SCOPED_TRACE(what);
        CString target{text};
        EXPECT_EQ(target.Replace(from, to), count);
        EXPECT_EQ(target, result);
    }
    CString elements{L"a/b/c"};
    EXPECT_EQ(elements.Replace(L'/', L'\\'), 2);
    EXPECT_EQ(elements, L"a\\b\\c");
}

TEST(CString, TakesItsOwnTextAsAnArgument) {
    CString replaced{L"abab"};
    EXPECT_EQ(replaced.Replace(L"a", replaced), 2);
    EXPECT_EQ(replaced, L"ababbababb");
    CString appended{L"abc"};
    appended += appended;
    EXPECT_EQ(appended, L"abcabc");
    appended += appended.GetString() + 4;
    EXPECT_EQ(appended, L"abcabcbc");
    CString trimmed{L"xyax"};
    EXPECT_EQ(trimmed.Trim(trimmed.View().substr(0, 2)), L"a");
}

TEST(CString, RefusesATextThatIsTooLongAndKeepsItsOwn) {
    CString text(L'a', 1 << 20);
    const CString before = text;
    EXPECT_THROW(text.Replace(L"a", CString(L'b', 1 << 10)), std::length_error);
    EXPECT_TRUE(text == before);
    EXPECT_THROW(CString(L'a', CString::MAX_LENGTH + 1), std::length_error);
}

TEST(CString, TrimsWhiteSpaceOrTheGivenElements) {
    EXPECT_EQ(CString{L" \t\r\n\xA0\x3000 a b \x2028\x85"}.Trim(), L"a b");
    EXPECT_EQ(CString{L"  a "}.TrimLeft(), L"a ");
    EXPECT_EQ(CString{L" a  "}.TrimRight(), L" a");
    EXPECT_EQ(CString{L" \t "}.Trim(), L"");
    EXPECT_EQ(CString{L"\xFEFFa\x200B"}.Trim(), L"\xFEFFa\x200B") << "neither is a blank";
    EXPECT_EQ(CString{L"--a-b+-"}.Trim(L"+-"), L"a-b");
    EXPECT_EQ(CString{L"--a-"}.TrimLeft(L"-"), L"a-");
    EXPECT_EQ(CString{L"-a--"}.TrimRight(L"-"), L"-a");
    EXPECT_EQ(CString{L"---"}.Trim(L"-"), L"");
    EXPECT_EQ(CString{L" a "}.Trim(L""), L" a ");
}

TEST(CString, ChangesCaseWithoutChangingItsLength) {
    EXPECT_EQ(CString{L"ABC ÄÖ 1\x0130\x212A\x1E9E"}.MakeLower(), L"abc äö 1ik\xDF");
    EXPECT_EQ(CString{L"abc äö\xDF \x10428"}.MakeUpper(), L"ABC ÄÖ\xDF \x10400");
}

TEST(CString, JoinsWithTextAndElements) {
    const CString path{L"C:"};
    EXPECT_EQ(path + L'\\' + L"data" + CString{L".ini"}, L"C:\\data.ini");
    EXPECT_EQ(L"<" + path + L">", L"<C:>");
    EXPECT_TRUE(L"C:" == path);
    EXPECT_TRUE(L"D:" > path);
    EXPECT_TRUE(path != L"c:");
}

}  // namespace
