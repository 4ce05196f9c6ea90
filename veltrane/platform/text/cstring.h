#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>

#include "veltrane/platform/export.h"
#include "veltrane/platform/text/format.h"

class CString;

namespace veltrane {

namespace detail {

template <class T>
concept XNarrow = (std::is_same_v<std::remove_const_t<T>, char>);

}  // namespace detail

/// Read-only text for the time of an operation: a CString, wide text (null is empty) or a view; owns nothing.
/// @code
/// int CountBlanks(CStringView text) { return static_cast<int>(std::ranges::count(text.View(), L' ')); }
/// CountBlanks(L"a literal") + CountBlanks(string) + CountBlanks(string.View().substr(1));
/// @endcode
class CStringView {
public:
    constexpr CStringView() noexcept = default;
    constexpr CStringView(const wchar_t* text) noexcept
        : m_Text(text ? std::wstring_view{text} : std::wstring_view{}) {}
    constexpr CStringView(std::wstring_view text) noexcept : m_Text(text) {}
    CStringView(const std::wstring& text) noexcept : m_Text(text) {}
    CStringView(const CString& text) noexcept;

    constexpr std::wstring_view View() const noexcept { return m_Text; }

private:
    std::wstring_view m_Text;
};

}  // namespace veltrane

/// The wide text of every interface, with value semantics. One element holds one code point; positions count elements
/// from 0, and a search that finds nothing gives -1. A text longer than MAX_LENGTH elements is refused: the operation
/// throws std::length_error and its target keeps its text.
/// @code
/// CString file{L"D:\\Out"};
/// file += L"\\run.log";
/// text.Format(L"Cannot open file <%s>!", file);
/// @endcode
class VELTRANE_API CString {
public:
    /// Longest text in elements (1 GiB of memory). Far above what any host shows, and low enough that rules which
    /// multiply a text end in an exception before the memory is full.
    static constexpr int MAX_LENGTH = (1 << 28) - 1;

    CString() = default;
    CString(const wchar_t* text);  ///< null gives the empty text
    /// Narrow text as FromUtf8 reads it, such as __FILE__ and __FUNCTION__; null gives the empty text. A template
    /// because 0 and nullptr would fit a plain "const char*" as well as wide text.
    template <veltrane::detail::XNarrow Char>
    CString(Char* text) : CString(FromNarrow(text)) {}
    CString(std::wstring_view text);
    CString(std::wstring&& text);         ///< takes the text over
    CString(wchar_t element, int count);  ///< a count below 0 gives the empty text

    const wchar_t* GetString() const noexcept { return m_Text.c_str(); }
    std::wstring_view View() const noexcept { return m_Text; }
    int GetLength() const noexcept { return static_cast<int>(m_Text.size()); }
    [[nodiscard]] bool IsEmpty() const noexcept { return m_Text.empty(); }
    const wchar_t* begin() const noexcept { return m_Text.data(); }
    const wchar_t* end() const noexcept { return m_Text.data() + m_Text.size(); }
    void Empty() noexcept { m_Text.clear(); }
    /// Cuts the text to a length and keeps its memory; a length beyond the text changes nothing.
    void Truncate(int length) noexcept {
        if (length < GetLength()) m_Text.resize(static_cast<std::size_t>(length > 0 ? length : 0));
    }

    /// The element at a position; NUL outside the text.
    wchar_t operator[](int position) const noexcept {
        return position >= 0 && position < GetLength() ? m_Text[static_cast<std::size_t>(position)] : L'\0';
    }

    /// -1, 0 or 1 in the order of 16-bit code units, as if elements above U+FFFF were surrogate pairs.
    int Compare(veltrane::CStringView other) const noexcept;
    /// Compare of both texts in simple lower case.
    int CompareNoCase(veltrane::CStringView other) const noexcept;

    /// First position of a text or element from start on; the empty text is found at start if that is inside.
    int Find(veltrane::CStringView text, int start = 0) const noexcept;
    int Find(wchar_t element, int start = 0) const noexcept;
    int ReverseFind(wchar_t element) const noexcept;
    /// First position of any of the given elements.
    int FindOneOf(veltrane::CStringView elements) const noexcept;

    [[nodiscard]] CString Left(int count) const;
    [[nodiscard]] CString Right(int count) const;
    [[nodiscard]] CString Mid(int first) const;
    [[nodiscard]] CString Mid(int first, int count) const;

    /// Replaces from left to right, without overlaps and without replacing in what it inserted; an empty old text
    /// changes nothing. @return number of replacements
    int Replace(veltrane::CStringView oldText, veltrane::CStringView newText);
    int Replace(wchar_t oldElement, wchar_t newElement);

    CString& MakeUpper();  ///< element by element, so the length stays; independent of the process locale
    CString& MakeLower();  ///< as MakeUpper

    CString& Trim();  ///< white space at both ends
    CString& TrimLeft();
    CString& TrimRight();
    CString& Trim(veltrane::CStringView elements);  ///< the given elements at both ends
    CString& TrimLeft(veltrane::CStringView elements);
    CString& TrimRight(veltrane::CStringView elements);
    CString& Trim(wchar_t element) { return Trim(std::wstring_view{&element, 1}); }
    CString& TrimLeft(wchar_t element) { return TrimLeft(std::wstring_view{&element, 1}); }
    CString& TrimRight(wchar_t element) { return TrimRight(std::wstring_view{&element, 1}); }

    /// Replaces the text by a formatted one; see XFormat for the conversions. The target may be its own argument.
    template <class... Args>
    void Format(veltrane::XFormatFor<Args...> format, const Args&... args) {
        *this = CString{veltrane::FormatText(format, args...)};
    }

    CString& operator+=(veltrane::CStringView text);
    CString& operator+=(wchar_t element);

    friend CString operator+(CString left, veltrane::CStringView right) { return std::move(left += right); }
    friend CString operator+(CString left, wchar_t right) { return std::move(left += right); }
    friend CString operator+(wchar_t left, const CString& right) { return std::move(CString{left, 1} += right); }
    friend CString operator+(const wchar_t* left, const CString& right) { return std::move(CString{left} += right); }

    // Each pair of types has a form of its own: with fewer, a literal or the reversed form would be ambiguous.
    friend bool operator==(const CString& left, const CString& right) noexcept { return left.Equals(right); }
    friend bool operator==(const CString& left, const wchar_t* right) noexcept { return left.Equals(right); }
    friend std::strong_ordering operator<=>(const CString& left, const CString& right) noexcept {
        return left.Compare(right) <=> 0;
    }
    friend std::strong_ordering operator<=>(const CString& left, const wchar_t* right) noexcept {
        return left.Compare(right) <=> 0;
    }

    /// Writes the text as UTF-8 (ToUtf8).
    template <class Traits>
    friend std::basic_ostream<char, Traits>& operator<<(std::basic_ostream<char, Traits>& out, const CString& text) {
        return out << text.Utf8();
    }
    /// Writes the elements as they are.
    template <class Traits>
    friend std::basic_ostream<wchar_t, Traits>& operator<<(std::basic_ostream<wchar_t, Traits>& out,
                                                           const CString& text) {
        return out << text.View();
    }

private:
    friend struct std::hash<CString>;

    bool Equals(veltrane::CStringView other) const noexcept { return View() == other.View() || Compare(other) == 0; }
    std::size_t Hash() const noexcept;
    std::string Utf8() const;
    static CString FromNarrow(const char* text);
    /// Cuts the text down to a part of it.
    CString& Keep(std::wstring_view part) noexcept;

    std::wstring m_Text;
};

/// @cond doxygen does not know the class outside its namespace
/// Of the 16-bit code units, as operator== compares: a pair of surrogates and its code point are equal.
template <>
struct std::hash<CString> {
    std::size_t operator()(const CString& text) const noexcept { return text.Hash(); }
};
/// @endcond

namespace veltrane {

inline CStringView::CStringView(const CString& text) noexcept : m_Text(text.View()) {}

inline XFormatArgument::XFormatArgument(const CString& text) noexcept : XFormatArgument(text.View()) {}

}  // namespace veltrane
