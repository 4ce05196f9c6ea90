#include "platform/format.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "support/support.h"

namespace {

template <class... Args>
CString Formatted(XFormatFor<Args...> format, const Args&... args) {
    CString text;
    text.Format(format, args...);
    return text;
}

TEST(Format, PrintsTexts) {
    const CString text{L"w\x1F600z"};
    const wchar_t* const null = nullptr;
    const char* const narrowNull = nullptr;
    const wchar_t unterminated[] = {L'a', L'b', L'c'};
    struct {
        CString printed;
        std::wstring expected;
    } const cases[] = {
        {Formatted(L"<%s>", text), L"<w\x1F600z>"},
        {Formatted(L"%ls|%ws", L"a", std::wstring{L"b"}), L"a|b"},
        {Formatted(L"%s", null), L"(null)"},
        {Formatted(L"%S %s %S", narrowNull, nullptr, nullptr), L"(null) (null) (null)"},
        {Formatted(L"%S|%hs|%S", "\xC3\xA4", std::string{"b"}, "\xFF"), L"ä|b|\xDCFF"},
        {Formatted(L"%5s|%-5s|", L"ab", L"ab"), L"   ab|ab   |"},
        {Formatted(L"%05s", L"ab"), L"   ab"},
        {Formatted(L"%.2s|%.0s|%.9s", text, text, text), L"w\x1F600||w\x1F600z"},
        {Formatted(L"%.3s", static_cast<const wchar_t*>(unterminated)), L"abc"},
        {Formatted(L"%.1S", "\xC3\xA4x"), L"ä"},
        {Formatted(L"%*s|%*s|", 4, L"a", -4, L"a"), L"   a|a   |"},
        {Formatted(L"%.*s|%.*s", 1, L"abc", -1, L"abc"), L"a|abc"},
        {Formatted(L"%c%lc%C%hc", L'ä', L'\0', 'x', 'y'), {L"ä\0xy", 4}},
        {Formatted(L"%3c|%-3C|", L'a', 'b'), L"  a|b  |"},
        {Formatted(L"100%%, %%s, %%"), L"100%, %s, %"},
        {Formatted(L"%s", std::wstring_view{L"a\0b", 3}), {L"a\0b", 3}},
        {Formatted(L""), L""},
    };
    for (const auto& [printed, expected] : cases) EXPECT_EQ(printed, CString{expected});
}

TEST(Format, NeverTakesAnArgumentAsAFormat) {
    EXPECT_EQ(Formatted(L"%s", L"%s%n%1000000s%"), L"%s%n%1000000s%");
}

TEST(Format, PrintsIntegersByTheirOwnType) {
    constexpr long long least = std::numeric_limits<long long>::min();
    struct {
        CString printed;
        const wchar_t* expected;
    } const cases[] = {
        {Formatted(L"%d %i %u", -5, 7, 9u), L"-5 7 9"},
        {Formatted(L"%d %d", INT_MIN, least), L"-2147483648 -9223372036854775808"},
        {Formatted(L"%hd %hhd %ld %lld %I64d", 100000, 300, 1L, 2LL, 3LL), L"100000 300 1 2 3"},
        {Formatted(L"%u %x", -1, -1), L"4294967295 ffffffff"},
        {Formatted(L"%u", static_cast<short>(-1)), L"65535"},
        {Formatted(L"%d", 4000000000u), L"4000000000"},
        {Formatted(L"%d %d", true, static_cast<unsigned char>(200)), L"1 200"},
        {Formatted(L"%x %X %o", 0xBEEF, 0xBEEF, 8), L"beef BEEF 10"},
        {Formatted(L"%#x %#X %#o %#x %#o", 255, 255, 8, 0, 0), L"0xff 0XFF 010 0 0"},
        {Formatted(L"%+d % d %+d % d", 1, 1, -1, -1), L"+1  1 -1 -1"},
        {Formatted(L"%5d|%-5d|%05d|%-05d|", 42, 42, 42, 42), L"   42|42   |00042|42   |"},
        {Formatted(L"%05d %+05d %#06x", -42, 42, 42), L"-0042 +0042 0x002a"},
        {Formatted(L"%02d:%02d", 7, 123), L"07:123"},
        {Formatted(L"%.3d|%6.3d|%06.3d|%.0d|%.0d", 7, 7, 7, 0, 1), L"007|   007|   007||1"},
        {Formatted(L"%*d|%-*d|%.*d", 4, 1, 4, 1, 3, 1), L"   1|1   |001"},
        {Formatted(L"%-*d|", -3, 1), L"1  |"},
    };
    for (const auto& [printed, expected] : cases) EXPECT_EQ(printed, expected);
}

TEST(Format, RoundsTheExactBinaryValue) {
    struct {
        CString printed;
        const wchar_t* expected;
    } const cases[] = {
        {Formatted(L"%f %lf", 1.5, -0.25), L"1.500000 -0.250000"},
        {Formatted(L"%.1f %.1f %.1f", 0.05, 0.15, 0.25), L"0.1 0.1 0.2"},
        {Formatted(L"%.2f %.2f %.2f", 1.005, 2.675, 0.125), L"1.00 2.67 0.12"},
        {Formatted(L"%.0f %.0f %.0f", 0.5, 1.5, 2.5), L"0 2 2"},
        {Formatted(L"%.1lf", 0.95f), L"0.9"},
        {Formatted(L"%.20f", 0.1), L"0.10000000000000000555"},
        {Formatted(L"%.0f", 1e22), L"10000000000000000000000"},
        {Formatted(L"%e %E %.0e", 12345.678, 0.0, 15.0), L"1.234568e+04 0.000000E+00 2e+01"},
        {Formatted(L"%g %g %g %G", 100000.0, 1e6, 0.0001, 1e-5), L"100000 1e+06 0.0001 1E-05"},
        {Formatted(L"%.3g %.0g %g", 1234.0, 25.0, 0.0), L"1.23e+03 2e+01 0"},
        {Formatted(L"%#.0f %#g %#.3g %#.0g", 1.0, 1.0, 0.5, 1.0), L"1. 1.00000 0.500 1."},
        {Formatted(L"%8.2f|%-8.2f|%08.2f|%+.1f|% .1f", -1.5, -1.5, -1.5, 2.0, 2.0),
         L"   -1.50|-1.50   |-0001.50|+2.0| 2.0"},
        {Formatted(L"%f %F %e", HUGE_VAL, -HUGE_VAL, std::nan("")), L"inf -INF nan"},
        {Formatted(L"%06.1f", HUGE_VAL), L"   inf"},
        {Formatted(L"%f", -0.0), L"-0.000000"},
        {Formatted(L"%.*f %.*f", 1, 0.25, -1, 0.25), L"0.2 0.250000"},
    };
    for (const auto& [printed, expected] : cases) EXPECT_EQ(printed, expected);
    EXPECT_EQ(Formatted(L"%f", std::numeric_limits<double>::max()).GetLength(), 316);
    EXPECT_EQ(Formatted(L"%.1100f", std::numeric_limits<double>::denorm_min()).Right(4), L"0000");
}

TEST(Format, PrintsPointers) {
    EXPECT_EQ(Formatted(L"%p", reinterpret_cast<const void*>(0xABC)), L"0xabc");
    EXPECT_EQ(Formatted(L"%8p|", nullptr), L"     0x0|");
}

TEST(Format, ReplacesATargetThatIsItsOwnArgument) {
    CString text{L"b"};
    text.Format(L"a%sc%s", text, text);
    EXPECT_EQ(text, L"abcb");
}

TEST(Format, SetsNoLimitToTheLength) {
    const CString big(L'x', 200'000);
    EXPECT_EQ(Formatted(L"%s%s", big, big).GetLength(), 400'000);
    EXPECT_EQ(Formatted(L"%*d", 300'000, 1).GetLength(), 300'000);
    EXPECT_EQ(Formatted(L"%.*f", 200'000, 0.5).GetLength(), 200'002);
}

TEST(Format, ThrowsForAWidthThatNoTextCanHave) {
    CString text{L"before"};
    EXPECT_THROW(text.Format(L"%*d", INT_MAX, 1), std::length_error);
    EXPECT_THROW(text.Format(L"%*s", INT_MIN, L"a"), std::length_error);
    EXPECT_THROW(text.Format(L"%.*f", LLONG_MAX, 1.0), std::length_error);
    EXPECT_EQ(text, L"before");
    text.Format(L"%.*s", LLONG_MAX, L"abc");
    EXPECT_EQ(text, L"abc");
}

TEST(Format, AcceptsOnlyWhatFits) {
    static_assert(XFormat<CString, int>::Fits(L"<%s> %d"));
    static_assert(XFormat<>::Fits(L"100%%"));
    static_assert(!XFormat<int>::Fits(L""), "surplus argument");
    static_assert(!XFormat<>::Fits(L"%d"), "missing argument");
    static_assert(!XFormat<int>::Fits(L"%*d"), "the star needs one too");
    static_assert(!XFormat<double, int>::Fits(L"%*d"), "a star takes integers");
    static_assert(!XFormat<int>::Fits(L"%s") && !XFormat<const char*>::Fits(L"%s") &&
                  !XFormat<std::string>::Fits(L"%s"));
    static_assert(!XFormat<const wchar_t*>::Fits(L"%S") && !XFormat<const wchar_t*>::Fits(L"%hs"));
    static_assert(!XFormat<CString>::Fits(L"%d") && !XFormat<double>::Fits(L"%d") && !XFormat<int>::Fits(L"%f"));
    static_assert(!XFormat<char>::Fits(L"%c") && !XFormat<wchar_t>::Fits(L"%C"));
    static_assert(!XFormat<int*>::Fits(L"%n") && !XFormat<int>::Fits(L"%q") && !XFormat<int>::Fits(L"%5"));
    static_assert(!XFormat<>::Fits(L"%") && !XFormat<>::Fits(L"50%"));
    static_assert(!XFormat<int>::Fits(L"%100001d"), "no column is that wide");
}

TEST(Format, ThrowsWhenAFormatThatWasNotCheckedIsNone) {
    const XFormatArgument one[] = {XFormatArgument{1}};
    for (const wchar_t* format : {L"%d %d", L"%*d", L"%", L"a%", L"%q", L"%5"}) {
        EXPECT_THROW(FormatArguments(format, one), std::invalid_argument) << ToUtf8(CString{format});
    }
}

}  // namespace
