#include "veltrane/platform/text/format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cwchar>
#include <stdexcept>

#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/cstring.h"
#include "veltrane/platform/text/encoding.h"

namespace veltrane {

using namespace detail;

std::wstring_view XFormatArgument::Wide(std::size_t limit) const noexcept {
    if (!m_Wide) return {};
    return {m_Wide, m_Length == NUL_ENDED ? wcsnlen(m_Wide, limit) : std::min(m_Length, limit)};
}

// A text cut by its precision need not end in NUL: no byte after the last wanted element is read.
std::string_view XFormatArgument::Narrow(std::size_t limit) const noexcept {
    if (!m_Narrow) return {};
    if (m_Length != NUL_ENDED) return {m_Narrow, m_Length};
    std::size_t length = 0;
    for (std::size_t elements = 0; elements < limit && m_Narrow[length] != '\0'; ++elements) {
        const auto lead = static_cast<unsigned char>(m_Narrow[length++]);
        for (int trails = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0; trails > 0; --trails) {
            if ((static_cast<unsigned char>(m_Narrow[length]) & 0xC0) != 0x80) break;
            ++length;
        }
    }
    return {m_Narrow, length};
}

namespace {

// The pieces of a number: what stands before and after the zeros that fill its width.
struct Number {
    std::string prefix;  // sign, "0x"
    std::string digits;
    bool fillZeros = false;
};

constexpr std::size_t Size(int count) noexcept {
    return static_cast<std::size_t>(count);
}

void AppendPadded(std::wstring& out, const XFormatConversion& conversion, std::wstring_view text) {
    const std::size_t width = Size(conversion.width);
    const std::size_t fill = width > text.size() ? width - text.size() : 0;
    if (!conversion.left) out.append(fill, L' ');
    out.append(text);
    if (conversion.left) out.append(fill, L' ');
}

void AppendNumber(std::wstring& out, const XFormatConversion& conversion, Number number) {
    const std::size_t length = number.prefix.size() + number.digits.size();
    const std::size_t width = Size(conversion.width);
    if (number.fillZeros && !conversion.left && width > length) number.digits.insert(0, width - length, '0');
    number.prefix += number.digits;
    AppendPadded(out, conversion, std::wstring(number.prefix.begin(), number.prefix.end()));
}

const char* Sign(const XFormatConversion& conversion, bool negative) {
    return negative ? "-" : conversion.plus ? "+" : conversion.blank ? " " : "";
}

Number IntegerNumber(const XFormatConversion& conversion, const XFormatArgument& argument) {
    const bool isDecimal = conversion.letter == L'd' || conversion.letter == L'i';
    const bool negative = isDecimal && argument.IsSigned() && argument.Signed() < 0;
    const std::uint64_t value = negative ? 0 - static_cast<std::uint64_t>(argument.Signed()) : argument.Unsigned();
    const bool isHex = conversion.letter == L'x' || conversion.letter == L'X';
    const int base = isHex ? 16 : conversion.letter == L'o' ? 8 : 10;

    char buffer[24];
    char* const end = std::to_chars(buffer, std::end(buffer), value, base).ptr;
    Number number{isDecimal ? Sign(conversion, negative) : "", {buffer, end}, conversion.zero};
    if (value == 0 && conversion.precision == 0) number.digits.clear();
    if (conversion.precision > static_cast<int>(number.digits.size())) {
        number.digits.insert(0, Size(conversion.precision) - number.digits.size(), '0');
    }
    if (conversion.precision >= 0) number.fillZeros = false;  // the precision already says how many digits
    if (conversion.alternate && base == 8 && !number.digits.starts_with('0')) number.digits.insert(0, 1, '0');
    if (conversion.alternate && isHex && value != 0) number.prefix = "0x";
    if (conversion.letter == L'X') {
        std::ranges::transform(number.prefix, number.prefix.begin(), UpperAscii<char>);
        std::ranges::transform(number.digits, number.digits.begin(), UpperAscii<char>);
    }
    return number;
}

// "%g" with '#' keeps the zeros that to_chars leaves out, and every real with '#' its point.
void KeepPoint(std::string& digits, std::size_t significant, bool isGeneral) {
    const std::size_t exponent = std::min(digits.find('e'), digits.size());
    std::string mantissa = digits.substr(0, exponent);
    if (mantissa.find('.') == std::string::npos) mantissa += '.';
    if (isGeneral) {
        const std::size_t nonZero = mantissa.find_first_of("123456789");
        const std::size_t first = nonZero == std::string::npos ? 0 : nonZero;
        const auto count = static_cast<std::size_t>(std::count_if(mantissa.begin() + static_cast<std::ptrdiff_t>(first),
                                                                  mantissa.end(), [](char c) { return c != '.'; }));
        if (count < significant) mantissa.append(significant - count, '0');
    }
    digits.replace(0, exponent, mantissa);
}

Number RealNumber(const XFormatConversion& conversion, const XFormatArgument& argument) {
    const double value = argument.Real();
    Number number{Sign(conversion, std::signbit(value)), {}, conversion.zero && std::isfinite(value)};
    const auto lower = LowerAscii(conversion.letter);
    const bool isGeneral = lower == L'g';
    const auto format = lower == L'f'   ? std::chars_format::fixed
                        : lower == L'e' ? std::chars_format::scientific
                                        : std::chars_format::general;
    int precision = conversion.precision < 0 ? 6 : conversion.precision;
    if (isGeneral && precision == 0) precision = 1;

    // 310 digits stand before the point of the largest double.
    number.digits.resize(Size(precision) + 320);
    char* const begin = number.digits.data();
    const auto [end, error] = std::to_chars(begin, begin + number.digits.size(), std::fabs(value), format, precision);
    number.digits.resize(static_cast<std::size_t>(end - begin));
    if (conversion.alternate && std::isfinite(value)) {
        KeepPoint(number.digits, Size(precision), isGeneral);
    }
    if (conversion.letter != lower) {
        std::ranges::transform(number.digits, number.digits.begin(), UpperAscii<char>);
    }
    return number;
}

Number PointerNumber(const XFormatArgument& argument) {
    char buffer[24];
    const auto value = reinterpret_cast<std::uintptr_t>(argument.Pointer());
    return {"0x", {buffer, std::to_chars(buffer, std::end(buffer), value, 16).ptr}, false};
}

void AppendConversion(std::wstring& out, const XFormatConversion& conversion, const XFormatArgument& argument) {
    const std::size_t limit = conversion.precision < 0 ? std::wstring_view::npos : Size(conversion.precision);
    switch (conversion.kind) {
        case XFormatKind::Integer:
            return AppendNumber(out, conversion, IntegerNumber(conversion, argument));
        case XFormatKind::Real:
            return AppendNumber(out, conversion, RealNumber(conversion, argument));
        case XFormatKind::Pointer:
            return AppendNumber(out, conversion, PointerNumber(argument));
        case XFormatKind::WideText:
            return AppendPadded(out, conversion, argument.Wide(limit));
        case XFormatKind::NarrowText:
            return AppendPadded(out, conversion, FromUtf8(argument.Narrow(limit)).View().substr(0, limit));
        case XFormatKind::WideCharacter: {
            const auto element = static_cast<wchar_t>(argument.Signed());
            return AppendPadded(out, conversion, {&element, 1});
        }
        case XFormatKind::NarrowCharacter: {
            const auto byte = static_cast<char>(argument.Signed());
            return AppendPadded(out, conversion, FromUtf8({&byte, 1}).View());
        }
    }
}

const XFormatArgument& NextArgument(std::span<const XFormatArgument>& arguments) {
    if (arguments.empty()) throw std::invalid_argument("format: argument missing");
    const XFormatArgument& argument = arguments.front();
    arguments = arguments.subspan(1);
    return argument;
}

// One more than the longest text stands for every larger number.
int StarValue(const XFormatArgument& argument) {
    constexpr std::int64_t beyond = std::int64_t{CString::MAX_LENGTH} + 1;
    return static_cast<int>(std::clamp(argument.Signed(), -beyond, beyond));
}

// A star takes its number from the arguments; a negative width means '-', a negative precision none.
void ReadStars(XFormatConversion& conversion, std::span<const XFormatArgument>& arguments) {
    if (conversion.starWidth) {
        conversion.width = StarValue(NextArgument(arguments));
        if (conversion.width < 0) {
            conversion.left = true;
            conversion.width = -conversion.width;
        }
    }
    if (conversion.starPrecision) conversion.precision = std::max(StarValue(NextArgument(arguments)), -1);
    const bool isNumber = conversion.kind == XFormatKind::Integer || conversion.kind == XFormatKind::Real;
    if (std::max(conversion.width, isNumber ? conversion.precision : 0) > CString::MAX_LENGTH) {
        throw std::length_error("format: width or precision");
    }
}

}  // namespace

std::wstring FormatArguments(std::wstring_view format, std::span<const XFormatArgument> arguments) {
    std::wstring out;
    for (XFormatScanner scanner{format}; scanner.More();) {
        const std::wstring_view literal = scanner.Literal();
        out.append(literal);
        if (!scanner.AtConversion()) {
            if (literal.empty()) throw std::invalid_argument("format: '%' at the end");
            continue;
        }
        XFormatConversion conversion;
        if (!scanner.Next(conversion)) throw std::invalid_argument("format: unknown conversion");
        ReadStars(conversion, arguments);
        AppendConversion(out, conversion, NextArgument(arguments));
    }
    return out;
}

}  // namespace veltrane
