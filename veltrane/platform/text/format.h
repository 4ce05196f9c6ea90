#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "veltrane/platform/export.h"

class CString;

namespace veltrane {

/// What a conversion of a format needs of its argument.
enum class XFormatKind : std::uint8_t { Integer, Real, WideText, NarrowText, WideCharacter, NarrowCharacter, Pointer };

/// One conversion of a format, '%' to letter.
struct XFormatConversion {
    bool left = false;       // '-'
    bool plus = false;       // '+'
    bool blank = false;      // ' '
    bool alternate = false;  // '#'
    bool zero = false;       // '0'
    bool starWidth = false;
    bool starPrecision = false;
    int width = 0;
    int precision = -1;  // -1: none given
    wchar_t letter = 0;
    XFormatKind kind = XFormatKind::Integer;
};

/// Reads a format conversion by conversion; the same code checks formats while compiling and walks them at run time.
/// @code
/// for (XFormatScanner scanner{format}; scanner.More();) {
///     Literal(scanner.Literal());
///     XFormatConversion conversion;
///     if (scanner.AtConversion() && scanner.Next(conversion)) Convert(conversion);
/// }
/// @endcode
class XFormatScanner {
public:
    /// Widths and precisions written with more than this are refused: no column is wider.
    static constexpr int MAX_WIDTH = 100'000;

    constexpr explicit XFormatScanner(std::wstring_view format) noexcept : m_Rest(format) {}

    /// The literal text in front of the next conversion, "%%" taken as the text "%".
    constexpr std::wstring_view Literal() {
        const std::size_t percent = m_Rest.find(L'%');
        if (percent == std::wstring_view::npos) return Cut(m_Rest.size());
        if (percent + 1 < m_Rest.size() && m_Rest[percent + 1] == L'%') {
            const std::wstring_view text = Cut(percent + 1);
            Cut(1);
            return text;
        }
        return Cut(percent);
    }

    /// True while a conversion or more text follows.
    constexpr bool More() const noexcept { return !m_Rest.empty(); }
    constexpr bool AtConversion() const noexcept {
        return m_Rest.size() >= 2 && m_Rest[0] == L'%' && m_Rest[1] != L'%';
    }

    /// Reads the conversion at the current place. @return false for an unknown one
    constexpr bool Next(XFormatConversion& conversion) {
        Cut(1);
        while (Flag(conversion)) Cut(1);
        if (!Number(conversion.width, conversion.starWidth)) return false;
        if (Peek() == L'.') {
            Cut(1);
            conversion.precision = 0;
            if (!Number(conversion.precision, conversion.starPrecision)) return false;
        }
        bool narrow = false;
        bool wide = false;
        Size(narrow, wide);
        conversion.letter = Peek();
        Cut(m_Rest.empty() ? 0 : 1);
        return Kind(conversion, narrow, wide);
    }

private:
    constexpr wchar_t Peek() const noexcept { return m_Rest.empty() ? L'\0' : m_Rest[0]; }

    constexpr std::wstring_view Cut(std::size_t count) {
        const std::wstring_view text = m_Rest.substr(0, count);
        m_Rest.remove_prefix(count);
        return text;
    }

    constexpr bool Flag(XFormatConversion& conversion) const noexcept {
        switch (Peek()) {
            case L'-':
                return conversion.left = true;
            case L'+':
                return conversion.plus = true;
            case L' ':
                return conversion.blank = true;
            case L'#':
                return conversion.alternate = true;
            case L'0':
                return conversion.zero = true;
            default:
                return false;
        }
    }

    constexpr bool Number(int& value, bool& star) {
        if (Peek() == L'*') {
            star = true;
            Cut(1);
            return true;
        }
        for (; Peek() >= L'0' && Peek() <= L'9'; Cut(1)) {
            value = value * 10 + (Peek() - L'0');
            if (value > MAX_WIDTH) return false;
        }
        return true;
    }

    constexpr void Size(bool& narrow, bool& wide) {
        if (m_Rest.starts_with(L"I64")) Cut(3);
        for (; Peek() == L'h' || Peek() == L'l' || Peek() == L'w'; Cut(1)) {
            (Peek() == L'h' ? narrow : wide) = true;
        }
    }

    static constexpr bool Kind(XFormatConversion& conversion, bool narrow, bool wide) {
        switch (conversion.letter) {
            case L's':
                conversion.kind = narrow ? XFormatKind::NarrowText : XFormatKind::WideText;
                return true;
            case L'c':
                conversion.kind = narrow ? XFormatKind::NarrowCharacter : XFormatKind::WideCharacter;
                return true;
            case L'S':
                conversion.kind = wide ? XFormatKind::WideText : XFormatKind::NarrowText;
                return true;
            case L'C':
                conversion.kind = wide ? XFormatKind::WideCharacter : XFormatKind::NarrowCharacter;
                return true;
            case L'd':
            case L'i':
            case L'u':
            case L'x':
            case L'X':
            case L'o':
                conversion.kind = XFormatKind::Integer;
                return true;
            case L'f':
            case L'F':
            case L'e':
            case L'E':
            case L'g':
            case L'G':
                conversion.kind = XFormatKind::Real;
                return true;
            case L'p':
                conversion.kind = XFormatKind::Pointer;
                return true;
            default:
                return false;
        }
    }

    std::wstring_view m_Rest;
};

/// One argument of a format, its type taken from the value itself; borrows the texts that it names.
/// @code
/// const XFormatArgument arguments[] = {XFormatArgument(name), XFormatArgument(3)};
/// FormatArguments(L"%s: %d", arguments);
/// @endcode
class VELTRANE_API XFormatArgument {
public:
    template <std::integral T>
    XFormatArgument(T value) noexcept
        : m_Bits(static_cast<std::uint64_t>(value)), m_Size(sizeof(T)), m_Signed(std::is_signed_v<T>) {}
    template <class T>
    requires std::is_enum_v<T> XFormatArgument(T value)
    noexcept : XFormatArgument(static_cast<std::underlying_type_t<T>>(value)) {}
    XFormatArgument(double value) noexcept : m_Real(value) {}
    XFormatArgument(const wchar_t* text) noexcept : m_Wide(text ? text : L"(null)"), m_Pointer(text) {}
    XFormatArgument(std::wstring_view text) noexcept
        : m_Wide(text.data()), m_Length(text.size()), m_Pointer(text.data()) {}
    XFormatArgument(const std::wstring& text) noexcept : XFormatArgument(std::wstring_view{text}) {}
    XFormatArgument(const CString& text) noexcept;
    XFormatArgument(const char* text) noexcept : m_Narrow(text ? text : "(null)"), m_Pointer(text) {}
    XFormatArgument(std::string_view text) noexcept
        : m_Narrow(text.data()), m_Length(text.size()), m_Pointer(text.data()) {}
    XFormatArgument(const std::string& text) noexcept : XFormatArgument(std::string_view{text}) {}
    XFormatArgument(std::nullptr_t) noexcept : m_Wide(L"(null)"), m_Narrow("(null)") {}
    XFormatArgument(const void* pointer) noexcept : m_Pointer(pointer) {}

    std::int64_t Signed() const noexcept { return static_cast<std::int64_t>(m_Bits); }
    bool IsSigned() const noexcept { return m_Signed; }
    /// The value's own bits, for the conversions that print without sign.
    std::uint64_t Unsigned() const noexcept {
        return m_Size >= sizeof m_Bits ? m_Bits : m_Bits & ((std::uint64_t{1} << (8 * m_Size)) - 1);
    }
    double Real() const noexcept { return m_Real; }
    /// The text, at most limit elements of it: no more is read, so a text cut by its precision needs no NUL.
    std::wstring_view Wide(std::size_t limit) const noexcept;
    std::string_view Narrow(std::size_t limit) const noexcept;
    const void* Pointer() const noexcept { return m_Pointer; }

private:
    static constexpr std::size_t NUL_ENDED = static_cast<std::size_t>(-1);

    const wchar_t* m_Wide = nullptr;
    const char* m_Narrow = nullptr;
    std::size_t m_Length = NUL_ENDED;  // of either text
    const void* m_Pointer = nullptr;
    double m_Real = 0;
    std::uint64_t m_Bits = 0;
    std::uint8_t m_Size = 0;
    bool m_Signed = false;
};

/// Whether a conversion of a kind can print a T.
template <class T>
constexpr bool AcceptsArgument(XFormatKind kind) {
    using D = std::decay_t<T>;
    constexpr bool isWide = std::is_convertible_v<const T&, const wchar_t*> || std::is_same_v<D, CString> ||
                            std::is_convertible_v<const T&, std::wstring_view>;
    constexpr bool isNarrow =
        std::is_convertible_v<const T&, const char*> || std::is_convertible_v<const T&, std::string_view>;
    switch (kind) {
        case XFormatKind::Integer:
            return std::is_integral_v<D> || std::is_enum_v<D>;
        case XFormatKind::Real:
            return std::is_same_v<D, double> || std::is_same_v<D, float>;
        case XFormatKind::WideText:
            return isWide;
        case XFormatKind::NarrowText:
            return isNarrow;
        case XFormatKind::WideCharacter:
            return std::is_same_v<D, wchar_t>;
        case XFormatKind::NarrowCharacter:
            return std::is_same_v<D, char>;
        case XFormatKind::Pointer:
            return std::is_pointer_v<D> || std::is_null_pointer_v<D>;
    }
    return false;
}

/// A format with the arguments it is for, checked while compiling: only a constant text converts to it, so a user's
/// text cannot become a format, and a missing, surplus or wrong argument does not compile.
///
/// Conversions: %s (also %ls, %ws) wide text, %S %hs narrow text in UTF-8, %c %C characters, %d %i %u %x %X %o integers
/// printed by their own type whatever h, l, ll or I64 say, %f %e %g %F %E %G doubles with '.', %p, %%. Flags "-+ #0",
/// width and precision as digits or '*'. No %n.
/// @code
/// void Report(XFormat<CString, int> format);
/// Report(L"%s in line %d");  // L"%d" alone does not compile
/// @endcode
template <class... Args>
class XFormat {
public:
    consteval XFormat(const wchar_t* format) : XFormat(std::wstring_view{format}) {}
    consteval XFormat(std::wstring_view format) : m_Format(format) {
        if (!Fits(format)) throw "the format and its arguments do not fit";
    }

    constexpr std::wstring_view View() const noexcept { return m_Format; }

    /// Whether a text is a format for just these arguments.
    static constexpr bool Fits(std::wstring_view format) {
        std::size_t used = 0;
        for (XFormatScanner scanner{format}; scanner.More();) {
            scanner.Literal();
            if (!scanner.More()) break;
            if (!scanner.AtConversion()) {
                if (scanner.Literal().empty()) return false;  // a '%' alone at the end
                continue;
            }
            XFormatConversion conversion;
            if (!scanner.Next(conversion)) return false;
            if (conversion.starWidth && !Accepts(used++, XFormatKind::Integer)) return false;
            if (conversion.starPrecision && !Accepts(used++, XFormatKind::Integer)) return false;
            if (!Accepts(used++, conversion.kind)) return false;
        }
        return used == sizeof...(Args);
    }

private:
    static constexpr bool Accepts([[maybe_unused]] std::size_t index, [[maybe_unused]] XFormatKind kind) {
        std::size_t position = 0;
        return (false || ... || (position++ == index && AcceptsArgument<Args>(kind)));
    }

    std::wstring_view m_Format;
};

template <class... Args>
using XFormatFor = XFormat<std::type_identity_t<Args>...>;

/// Formats with arguments that were checked against the format. @throws std::length_error for a width, or the precision
/// of a number, above CString::MAX_LENGTH; std::invalid_argument for a format that is not valid or needs more arguments
VELTRANE_API std::wstring FormatArguments(std::wstring_view format, std::span<const XFormatArgument> arguments);

template <class... Args>
std::wstring FormatText(XFormatFor<Args...> format, const Args&... args) {
    if constexpr (sizeof...(Args) == 0) {
        return FormatArguments(format.View(), {});
    } else {
        const XFormatArgument arguments[] = {XFormatArgument(args)...};
        return FormatArguments(format.View(), arguments);
    }
}

}  // namespace veltrane
