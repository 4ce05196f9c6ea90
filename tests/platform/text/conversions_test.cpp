#include <climits>
#include <cwchar>

#include "support/support.h"
#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/internal/indexformat.h"
#include "veltrane/platform/text/numbers.h"

TEST(Characters, FoldOneElementToOne) {
    EXPECT_EQ(FoldCharacter(L'Z'), L'z');
    EXPECT_EQ(FoldCharacter(0x10400), 0x10428) << "above U+FFFF";
    // The neighbours of the letters, the final sigma, the micro sign, a lone surrogate and values above U+10FFFF.
    for (const wchar_t itself : std::wstring{L'@', L'[', 0x03C2, 0x00B5, 0xD800, WCHAR_MAX, WCHAR_MIN, wchar_t(-1)}) {
        EXPECT_EQ(FoldCharacter(itself), itself);
    }
}

TEST(Characters, KnowTheWhiteSpaceOfUnicode) {
    for (const wchar_t blank :
         {0x09, 0x0D, 0x20, 0x85, 0xA0, 0x1680, 0x2000, 0x200A, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000}) {
        EXPECT_TRUE(IsWhiteSpace(blank)) << static_cast<int>(blank);
    }
    for (const wchar_t other : {0x00, 0x08, 0x0E, 0x1C, 0x1F, 0x21, 0x180E, 0x1FFF, 0x200B, 0x2060, 0xFEFF, -1}) {
        EXPECT_FALSE(IsWhiteSpace(other)) << static_cast<int>(other);
    }
}

TEST(Encoding, ReadsStrictlyAndKeepsEveryOtherByte) {
    const std::tuple<const char*, std::string, std::wstring> cases[] = {
        {"two, three, four bytes", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", L"ä\x20AC\x1F600"},
        {"the last code point", "\xF4\x8F\xBF\xBF", L"\x10FFFF"},
        {"above the last", "\xF4\x90\x80\x80", {0xDCF4, 0xDC90, 0xDC80, 0xDC80}},
        {"overlong slash", "\xC0\xAF", {0xDCC0, 0xDCAF}},
        {"overlong in three bytes", "\xE0\x80\xAF", {0xDCE0, 0xDC80, 0xDCAF}},
        {"a surrogate", "\xED\xA0\x80", {0xDCED, 0xDCA0, 0xDC80}},
        {"cut off in the middle", "\xE2\x82", {0xDCE2, 0xDC82}},
        {"goes on after one byte", "\xE2\xC3\xA4\xFF", {0xDCE2, L'ä', 0xDCFF}},
    };
    for (const auto& [what, bytes, text] : cases) {
        EXPECT_EQ(FromUtf8(bytes), CString{text}) << what;
        EXPECT_EQ(ToUtf8(CString{text}), bytes) << what << ", and back without loss";
    }
    EXPECT_EQ(ToUtf8(std::wstring{0xD800, 0xDC7F, 0xDD00, 0xDFFF, 0xFFFF, 0x110000, wchar_t(-1)}),
              "\xED\xA0\x80\xED\xB1\xBF\xED\xB4\x80\xED\xBF\xBF\xEF\xBF\xBF\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Numbers, AreReadAtTheFrontOfATextWithinTheLimitsOfInt) {
    const std::pair<const wchar_t*, int> cases[] = {{L"2147483647", INT_MAX},
                                                    {L"2147483648", INT_MAX},
                                                    {L"999999999999999999999", INT_MAX},
                                                    {L"+007", 7},
                                                    {L"-2147483648", INT_MIN},
                                                    {L"-2147483649", INT_MIN},
                                                    {L"  \xA0-17x", -17},
                                                    {nullptr, 0}};
    for (const auto& [text, number] : cases) EXPECT_EQ(_wtoi(text), number) << ToUtf8(text);
    for (const wchar_t* text : {L"", L"x1", L"- 1", L"--1", L"+-1", L" +", L"\x0661"}) {
        int untouched = 5;
        EXPECT_FALSE(ScanInteger(text, untouched) || untouched != 5) << ToUtf8(text);
    }
}

TEST(IndexFormat, ReadsTheNumberOfAnItemThatFits) {
    const std::tuple<const wchar_t*, const wchar_t*, int> cases[] = {
        {L"x-%d", L"x-\x3000-7y", -7},        {L"a \t b%d", L"ab1", 1},     {L"a b%d", L"a \x2003\t b1", 1},
        {L"%s%*d%5d%[%d", L"%s%*d%5d%[4", 4}, {L"%%d%d\\%d", L"%d8\\2", 8},
    };
    int index = 0;
    for (const auto& [format, item, expected] : cases) {
        EXPECT_TRUE(MatchIndex(item, format, index) && index == expected) << ToUtf8(item);
    }
    for (const wchar_t* item : {L"x-", L"x-+", L"x", L"", L"X-1", L"x%"}) {
        index = -77;
        EXPECT_FALSE(MatchIndex(item, L"x-%d", index) || MatchIndex(item, item, index) || index != -77) << ToUtf8(item);
    }
}

TEST(IndexFormat, WritesWhatItReads) {
    EXPECT_EQ(FormatIndex(L"50%%_a%n\\%d\\%d", INT_MIN), L"50%_a%n\\-2147483648\\%d");
    EXPECT_EQ(FormatIndex(L"no number%", 7) + FormatIndex(L"%%%d", 7), L"no number%%7");
}
