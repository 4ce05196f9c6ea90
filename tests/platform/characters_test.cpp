#include "platform/characters.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cwchar>

#include "platform/encoding.h"

namespace {

TEST(Characters, FoldsOneElementToOne) {
    struct {
        const char* what;
        wchar_t element;
        wchar_t folded;
    } const cases[] = {
        {"ASCII", L'Z', L'z'},
        {"behind Z", L'[', L'['},
        {"before A", L'@', L'@'},
        {"umlaut", L'Ä', L'ä'},
        {"dotted I", 0x0130, L'i'},
        {"Kelvin sign", 0x212A, L'k'},
        {"capital sharp s", 0x1E9E, 0x00DF},
        {"sharp s", 0x00DF, 0x00DF},
        {"final sigma is not sigma", 0x03C2, 0x03C2},
        {"sigma", 0x03A3, 0x03C3},
        {"micro sign is not mu", 0x00B5, 0x00B5},
        {"above U+FFFF", 0x10400, 0x10428},
        {"no letter", 0x2028, 0x2028},
        {"lone surrogate", 0xD800, 0xD800},
        {"no code point", static_cast<wchar_t>(0x7FFFFFFF), static_cast<wchar_t>(0x7FFFFFFF)},
        {"negative", WCHAR_MIN, WCHAR_MIN},
        {"minus one", -1, -1},
    };
    for (const auto& [what, element, folded] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(FoldCharacter(element), folded);
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
        {L"42", 42},
        {L"  \xA0-17x", -17},
        {L"+7", 7},
        {L"007", 7},
        {L"", 0},
        {L"x1", 0},
        {L"- 1", 0},
        {L"--1", 0},
        {L"+-1", 0},
        {L"0x10", 0},
        {L"\x0661", 0},  // an Arabic digit
        {L"2147483647", INT_MAX},
        {L"2147483648", INT_MAX},
        {L"-2147483648", INT_MIN},
        {L"-2147483649", INT_MIN},
        {L"99999999999999999999999999999999999999", INT_MAX},
        {L"-99999999999999999999999999999999999999", INT_MIN},
        {nullptr, 0},
    };
    for (const auto& [text, number] : cases) EXPECT_EQ(_wtoi(text), number) << ToUtf8(CString{text});

    int untouched = 5;
    EXPECT_FALSE(ScanInteger(L" +", untouched));
    EXPECT_EQ(untouched, 5);
}

}  // namespace
