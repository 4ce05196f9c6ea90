#include "platform/characters.h"

#include <gtest/gtest.h>

#include <climits>
#include <cwchar>

#include "platform/encoding.h"

namespace {

TEST(Characters, FoldOneElementToOne) {
    struct {
        const char* what;
        wchar_t element;
        wchar_t folded;
    } const cases[] = {
        {"ASCII", L'Z', L'z'},         {"dotted I", 0x0130, L'i'},
        {"Kelvin sign", 0x212A, L'k'}, {"capital sharp s", 0x1E9E, 0x00DF},
        {"sigma", 0x03A3, 0x03C3},     {"above U+FFFF", 0x10400, 0x10428},
    };
    for (const auto& [what, element, folded] : cases) EXPECT_EQ(FoldCharacter(element), folded) << what;
    // The neighbours of the letters, the final sigma, the micro sign, a lone surrogate and what is no code point.
    for (const wchar_t itself : std::wstring{L'@', L'[', 0x03C2, 0x00B5, 0xD800, WCHAR_MAX, WCHAR_MIN, -1}) {
        EXPECT_EQ(FoldCharacter(itself), itself);
    }
    EXPECT_EQ(UpperCharacter(0x00DF), 0x00DF);
    EXPECT_EQ(UpperCharacter(L'ä'), L'Ä');
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
    struct {
        const wchar_t* text;
        int number;
    } const cases[] = {
        {L"2147483647", INT_MAX},
        {L"2147483648", INT_MAX},
        {L"-2147483648", INT_MIN},
        {L"-2147483649", INT_MIN},
        {L"9999999999999999999", INT_MAX},
        {L"  \xA0-17x", -17},
        {L"+007", 7},
    };
    for (const auto& [text, number] : cases) EXPECT_EQ(_wtoi(text), number) << ToUtf8(text);
    EXPECT_EQ(_wtoi(nullptr), 0);

    for (const wchar_t* text : {L"", L"x1", L"- 1", L"--1", L"+-1", L" +", L"\x0661"}) {
        int untouched = 5;
        EXPECT_FALSE(ScanInteger(text, untouched)) << ToUtf8(text);
        EXPECT_EQ(untouched, 5);
    }
}

}  // namespace
