#include "veltrane/platform/text/format.h"

#include <climits>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "support/support.h"

static void Check(const std::vector<std::pair<std::wstring, std::wstring>>& cases) {
    for (const auto& [printed, expected] : cases) EXPECT_EQ(CString{printed}, CString{expected});
}

TEST(Format, PrintsTexts) {
    const CString text{L"w\x1F600z"};
    const wchar_t* const null = nullptr;
    const char* const narrowNull = nullptr;
    const wchar_t unterminated[] = {L'a', L'b', L'c'};
    const char narrowUnterminated[] = {'a', '\xC3', '\xA4', 'c'};
    Check({
        {FormatText(L"<%s|%ls|%ws>", text, L"a", std::wstring{L"b"}), L"<w\x1F600z|a|b>"},
        {FormatText(L"%s|%S %s %S", null, narrowNull, nullptr, nullptr), L"(null)|(null) (null) (null)"},
        {FormatText(L"%S|%hs|%S", "\xC3\xA4", std::string{"b"}, "\xFF"), L"ä|b|\xDCFF"},
        {FormatText(L"%5s|%-5s|%05s", L"ab", L"ab", L"ab"), L"   ab|ab   |   ab"},
        {FormatText(L"%.2s|%.0s|%.9s", text, text, text), L"w\x1F600||w\x1F600z"},
        {FormatText(L"%.3s", static_cast<const wchar_t*>(unterminated)), L"abc"},
        {FormatText(L"%.3S", static_cast<const char*>(narrowUnterminated)), L"aäc"},
        {FormatText(L"%.1S|%.1S", "\xC3\xA4x", "\xF0\x9F\x98\x80x"), L"ä|\x1F600"},
        {FormatText(L"%*s|%*s|%.*s|%.*s", 4, L"a", -4, L"a", 1, L"abc", -1, L"abc"), L"   a|a   |a|abc"},
        {FormatText(L"%c%lc%C%hc", L'ä', L'\0', 'x', 'y'), {L"ä\0xy", 4}},
        {FormatText(L"%3c|%-3C|", L'a', 'b'), L"  a|b  |"},
        {FormatText(L"100%%, %%s, %%"), L"100%, %s, %"},
        {FormatText(L"%s", std::wstring_view{L"a\0b", 3}), {L"a\0b", 3}},
        {FormatText(L"%s", L"%s%n%1000000s%"), L"%s%n%1000000s%"},
        {FormatText(L"%p|%8p|", reinterpret_cast<const void*>(0xABC), nullptr), L"0xabc|     0x0|"},
    });
    CString own{L"b"};
    own.Format(L"a%sc%s", own, own);
    EXPECT_EQ(own, L"abcb");
}

TEST(Format, PrintsIntegersByTheirOwnType) {
    Check({
        {FormatText(L"%d %i %u", -5, 7, 9u), L"-5 7 9"},
        {FormatText(L"%d %d", INT_MIN, LLONG_MIN), L"-2147483648 -9223372036854775808"},
        {FormatText(L"%hd %hhd %ld %lld %I64d", 100000, 300, 1L, 2LL, 3LL), L"100000 300 1 2 3"},
        {FormatText(L"%u %x %u", -1, -1, static_cast<short>(-1)), L"4294967295 ffffffff 65535"},
        {FormatText(L"%d %d %d", 4000000000u, true, static_cast<unsigned char>(200)), L"4000000000 1 200"},
        {FormatText(L"%d", ULLONG_MAX), L"18446744073709551615"},
        {FormatText(L"%#x %#X %#o %#x %#o", 255, 255, 8, 0, 0), L"0xff 0XFF 010 0 0"},
        {FormatText(L"%+d % d %+d % d %+ d", 1, 1, -1, -1, 1), L"+1  1 -1 -1 +1"},
        {FormatText(L"%5d|%-5d|%05d|%-05d|", 42, 42, 42, 42), L"   42|42   |00042|42   |"},
        {FormatText(L"%05d %+05d %#06x", -42, 42, 42), L"-0042 +0042 0x002a"},
        {FormatText(L"%.3d|%6.3d|%06.3d|%.0d|%.0d", 7, 7, 7, 0, 1), L"007|   007|   007||1"},
    });
}

TEST(Format, RoundsTheExactBinaryValue) {
    Check({
        {FormatText(L"%f %lf %f", 1.5, -0.25, -0.0), L"1.500000 -0.250000 -0.000000"},
        {FormatText(L"%.1f %.1f %.1f %.1lf", 0.05, 0.15, 0.25, 0.95f), L"0.1 0.1 0.2 0.9"},
        {FormatText(L"%e %E %.0e", 12345.678, 0.0, 15.0), L"1.234568e+04 0.000000E+00 2e+01"},
        {FormatText(L"%g %g %g %G", 100000.0, 1e6, 0.0001, 1e-5), L"100000 1e+06 0.0001 1E-05"},
        {FormatText(L"%.3g %.0g %g %#.0f", 1234.0, 25.0, 0.0, 1.0), L"1.23e+03 2e+01 0 1."},
        {FormatText(L"%#g %#.3g %#.0g", 1.0, 0.5, 1.0), L"1.00000 0.500 1."},
        {FormatText(L"%8.2f|%-8.2f|%08.2f", -1.5, -1.5, -1.5), L"   -1.50|-1.50   |-0001.50"},
        {FormatText(L"%f %F %e|%06.1f", HUGE_VAL, -HUGE_VAL, std::nan(""), HUGE_VAL), L"inf -INF nan|   inf"},
    });
    EXPECT_EQ(FormatText(L"%f", std::numeric_limits<double>::max()).size(), 316);
    EXPECT_EQ(FormatText(L"%.1100f", std::numeric_limits<double>::denorm_min()).substr(1098), L"0000");
}

TEST(Format, LimitsWidthsButNotLengths) {
    EXPECT_EQ(FormatText(L"%*d", 300'000, 1).size(), 300'000);
    EXPECT_EQ(FormatText(L"%.*f", 200'000, 0.5).size(), 200'002);
    EXPECT_EQ(FormatText(L"%.*s", LLONG_MAX, L"abc"), L"abc");
    CString text{L"before"};
    EXPECT_THROW(text.Format(L"%*d", INT_MAX, 1), std::length_error);
    EXPECT_THROW(text.Format(L"%*s", INT_MIN, L"a"), std::length_error);
    EXPECT_THROW(text.Format(L"%.*f", LLONG_MAX, 1.0), std::length_error);
    EXPECT_EQ(text, L"before");
}

TEST(Format, AcceptsOnlyWhatFits) {
    static_assert(XFormat<CString, int>::Fits(L"<%s> %d") && XFormat<>::Fits(L"100%%"));
    static_assert(!XFormat<int>::Fits(L"") && !XFormat<>::Fits(L"%d"), "surplus and missing argument");
    static_assert(!XFormat<int>::Fits(L"%*d") && !XFormat<double, int>::Fits(L"%*d"), "a star takes an integer");
    static_assert(!XFormat<int>::Fits(L"%s") && !XFormat<const char*>::Fits(L"%s") && !XFormat<int>::Fits(L"%f"));
    static_assert(!XFormat<std::string>::Fits(L"%s") && !XFormat<const wchar_t*>::Fits(L"%S"));
    static_assert(!XFormat<char>::Fits(L"%c") && !XFormat<wchar_t>::Fits(L"%C") && !XFormat<double>::Fits(L"%d"));
    static_assert(!XFormat<int*>::Fits(L"%n") && !XFormat<int>::Fits(L"%5") && !XFormat<>::Fits(L"50%"));
    static_assert(!XFormat<int>::Fits(L"%100001d"), "no column is that wide");

    const XFormatArgument one[] = {XFormatArgument{1}};
    for (const wchar_t* unchecked : {L"%d %d", L"%*d", L"a%", L"%q", L"%5"}) {
        EXPECT_THROW(FormatArguments(unchecked, one), std::invalid_argument) << ToUtf8(unchecked);
    }
}
