#include "platform/encoding.h"

#include <gtest/gtest.h>

#include "support/support.h"

namespace {

TEST(Encoding, ReadsStrictlyAndKeepsEveryOtherByte) {
    struct {
        const char* what;
        std::string bytes;
        std::wstring text;
    } const cases[] = {
        {"ASCII", "abc", L"abc"},
        {"NUL", {"a\0b", 3}, {L"a\0b", 3}},
        {"two, three, four bytes", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", L"ä\x20AC\x1F600"},
        {"the last code point", "\xF4\x8F\xBF\xBF", L"\x10FFFF"},
        {"above the last", "\xF4\x90\x80\x80", {0xDCF4, 0xDC90, 0xDC80, 0xDC80}},
        {"overlong slash", "\xC0\xAF", {0xDCC0, 0xDCAF}},
        {"overlong in three bytes", "\xE0\x80\xAF", {0xDCE0, 0xDC80, 0xDCAF}},
        {"a surrogate", "\xED\xA0\x80", {0xDCED, 0xDCA0, 0xDC80}},
        {"a lone trail byte", "a\x80z", {L'a', 0xDC80, L'z'}},
        {"cut off in the middle", "\xE2\x82", {0xDCE2, 0xDC82}},
        {"goes on behind one byte", "\xE2\xC3\xA4", {0xDCE2, L'ä'}},
        {"no lead byte", "\xFF\xFE", {0xDCFF, 0xDCFE}},
    };
    for (const auto& [what, bytes, text] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(FromUtf8(bytes), CString{text});
        EXPECT_EQ(ToUtf8(CString{text}), bytes) << "and back without loss";
    }
}

TEST(Encoding, WritesWhatIsNoCodePoint) {
    struct {
        wchar_t element;
        const char* bytes;
    } const cases[] = {
        {0xD800, "\xED\xA0\x80"},   {0xDC7F, "\xED\xB1\xBF"}, {0xDD00, "\xED\xB4\x80"}, {0xDFFF, "\xED\xBF\xBF"},
        {0x110000, "\xEF\xBF\xBD"}, {-1, "\xEF\xBF\xBD"},     {0xFFFF, "\xEF\xBF\xBF"},
    };
    for (const auto& [element, bytes] : cases) EXPECT_EQ(ToUtf8(CString(element, 1)), bytes);
}

}  // namespace
