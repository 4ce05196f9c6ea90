#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace veltrane::detail {

constexpr bool IsLeadSurrogate(char32_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool IsTrailSurrogate(char32_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

constexpr bool IsSurrogate(char32_t unit) noexcept {
    return IsLeadSurrogate(unit) || IsTrailSurrogate(unit);
}

/// The two halves of a code point above U+FFFF, and the code point of two halves.
constexpr char32_t LeadSurrogate(char32_t codePoint) noexcept {
    return 0xD800 + ((codePoint - 0x10000) >> 10);
}

constexpr char32_t TrailSurrogate(char32_t codePoint) noexcept {
    return 0xDC00 + (codePoint & 0x3FF);
}

constexpr char32_t JoinSurrogates(char32_t lead, char32_t trail) noexcept {
    return 0x10000 + ((lead - 0xD800) << 10) + (trail - 0xDC00);
}

enum class Utf16Order { LittleEndian, BigEndian };

/// Appends the two bytes of a unit.
inline void AppendUnit(std::string& bytes, char32_t unit, Utf16Order order = Utf16Order::LittleEndian) {
    const char halves[] = {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8 & 0xFF)};
    const int first = order == Utf16Order::LittleEndian ? 0 : 1;
    bytes += {halves[first], halves[1 - first]};
}

/// Appends a code point, one above U+FFFF as a pair of units.
inline void AppendUtf16(std::string& bytes, char32_t codePoint, Utf16Order order = Utf16Order::LittleEndian) {
    if (codePoint > 0xFFFF) AppendUnit(bytes, LeadSurrogate(codePoint), order);
    AppendUnit(bytes, codePoint > 0xFFFF ? TrailSurrogate(codePoint) : codePoint, order);
}

/// Walks over the 16-bit units of bytes: a pair is one code point, a lone surrogate stays.
class Utf16Reader {
public:
    explicit Utf16Reader(std::string_view bytes, Utf16Order order = Utf16Order::LittleEndian) noexcept
        : m_Rest(bytes), m_LowAt(order == Utf16Order::LittleEndian ? 0 : 1) {}

    bool More() const noexcept { return m_Rest.size() >= 2; }  ///< a last odd byte is not a unit

    char32_t Next() noexcept {  ///< while there are More
        const char32_t lead = NextUnit();
        if (!IsLeadSurrogate(lead) || !More() || !IsTrailSurrogate(Peek())) return lead;
        return JoinSurrogates(lead, NextUnit());
    }

private:
    char32_t Peek() const noexcept {
        const auto low = static_cast<std::uint8_t>(m_Rest[m_LowAt]);
        const auto high = static_cast<std::uint8_t>(m_Rest[1 - m_LowAt]);
        return static_cast<char32_t>(high << 8 | low);
    }

    char32_t NextUnit() noexcept {
        const char32_t unit = Peek();
        m_Rest.remove_prefix(2);
        return unit;
    }

    std::string_view m_Rest;
    std::size_t m_LowAt;
};

}  // namespace veltrane::detail
