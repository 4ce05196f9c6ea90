#include "veltrane/platform/text/encoding.h"

#include "support/support.h"

namespace {

TEST(Encoding, ReadsStrictlyAndKeepsEveryOtherByte) {
    const std::tuple<const char*, std::string, std::wstring> cases[] = {
        {"NUL", {"a\0b", 3}, {L"a\0b", 3}},
        {"two, three, four bytes", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", L"ä\x20AC\x1F600"},
        {"the last code point", "\xF4\x8F\xBF\xBF", L"\x10FFFF"},
        {"above the last", "\xF4\x90\x80\x80", {0xDCF4, 0xDC90, 0xDC80, 0xDC80}},
        {"overlong slash", "\xC0\xAF", {0xDCC0, 0xDCAF}},
        {"overlong in three bytes", "\xE0\x80\xAF", {0xDCE0, 0xDC80, 0xDCAF}},
        {"a surrogate", "\xED\xA0\x80", {0xDCED, 0xDCA0, 0xDC80}},
        {"cut off in the middle", "\xE2\x82", {0xDCE2, 0xDC82}},
        {"goes on after one byte", "\xE2\xC3\xA4z", {0xDCE2, L'ä', L'z'}},
        {"no lead byte", "\xFF\xFE", {0xDCFF, 0xDCFE}},
    };
    for (const auto& [what, bytes, text] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(FromUtf8(bytes), CString{text});
        EXPECT_EQ(ToUtf8(CString{text}), bytes) << "and back without loss";
    }
    EXPECT_EQ(ToUtf8(std::wstring{0xD800, 0xDC7F, 0xDD00, 0xDFFF, 0xFFFF, 0x110000, -1}),  // the last two are none
              "\xED\xA0\x80\xED\xB1\xBF\xED\xB4\x80\xED\xBF\xBF\xEF\xBF\xBF\xEF\xBF\xBD\xEF\xBF\xBD");
}

}  // namespace
