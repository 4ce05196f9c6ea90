#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/numbers.h"

#include <gtest/gtest.h>

#include <climits>
#include <cwchar>

#include "veltrane/platform/text/encoding.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

TEST(Characters, FoldOneElementToOne) {
    EXPECT_EQ(FoldCharacter(L'Z'), L'z');
    EXPECT_EQ(FoldCharacter(0x03A3), 0x03C3) << "sigma";
    EXPECT_EQ(FoldCharacter(0x10400), 0x10428) << "above U+FFFF";
    // The neighbours of the letters, the final sigma, the micro sign, a lone surrogate and what is no code point.
    for (const wchar_t itself : std::wstring{L'@', L'[', 0x03C2, 0x00B5, 0xD800, WCHAR_MAX, WCHAR_MIN, -1}) {
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

TEST(Characters, ReadANumberAtTheFront) {
    const std::pair<const wchar_t*, int> cases[] = {
        {L"2147483647", INT_MAX},
        {L"2147483648", INT_MAX},
        {L"-2147483648", INT_MIN},
        {L"-2147483649", INT_MIN},
        {L"999999999999999999999", INT_MAX},
        {L"  \xA0-17x", -17},
        {L"+007", 7},
        {nullptr, 0},
    };
    for (const auto& [text, number] : cases) EXPECT_EQ(_wtoi(text), number) << ToUtf8(text);

    for (const wchar_t* text : {L"", L"x1", L"- 1", L"--1", L"+-1", L" +", L"\x0661"}) {
        int untouched = 5;
        EXPECT_FALSE(ScanInteger(text, untouched)) << ToUtf8(text);
        EXPECT_EQ(untouched, 5);
    }
}

}  // namespace
