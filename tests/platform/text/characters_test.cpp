#include "veltrane/platform/text/characters.h"

#include <cwchar>

#include "support/support.h"

namespace {

TEST(Characters, FoldOneElementToOne) {
    EXPECT_EQ(FoldCharacter(L'Z'), L'z');
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

}  // namespace
