#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// Searches a text for places where a key could end: its last two elements, and behind them a blank, a NUL or '='.
/// Nearly all lines of a section drop out here, at 16 bytes a step. It may find too much (bytes from 0x80 on pass for
/// every element), never too little.
class NameEndSearch {
public:
    /// @param folded  the key in lower case, not empty
    explicit NameEndSearch(std::wstring_view folded) noexcept
        : m_Last(Pattern::Of(folded.back())),
          m_Before(folded.size() > 1 ? Pattern::Of(folded[folded.size() - 2]) : Pattern{0xFF, 0xFF}) {}

    /// Position of the last element of a possible key at or behind start, which must not be 0; the text's size when
    /// there is none.
    std::size_t Find(std::string_view text, std::size_t start) const noexcept {
        std::size_t at = start;
        while (at + STEP < text.size() && !IsInStep(text.data() + at)) at += STEP;
        while (at + 1 < text.size() && !IsEnd(Byte(text[at - 1]), Byte(text[at]), Byte(text[at + 1]))) ++at;
        return at + 1 < text.size() ? at : text.size();
    }

private:
    static constexpr std::size_t STEP = 16;
    using Bytes = std::uint8_t __attribute__((vector_size(STEP)));

    /// A byte fits if it equals value after the bits are set. The case bit makes a letter fit in both cases.
    struct Pattern {
        std::uint8_t bits;
        std::uint8_t value;
        static constexpr Pattern Of(wchar_t element) noexcept {
            if (element < 0 || element >= 0x80) return {0, 0x80};  // only bytes from 0x80 on, which pass anyway
            const bool isLetter = element >= L'a' && element <= L'z';
            return {static_cast<std::uint8_t>(isLetter ? 0x20 : 0), static_cast<std::uint8_t>(element)};
        }
    };

    static std::uint8_t Byte(char byte) noexcept { return static_cast<std::uint8_t>(byte); }

    static Bytes Load(const char* at) noexcept {
        Bytes bytes;
        std::memcpy(&bytes, at, STEP);
        return bytes;
    }

    bool IsInStep(const char* at) const noexcept {
        const auto ends = IsEnd(Load(at - 1), Load(at), Load(at + 1));
        std::uint64_t halves[2];
        std::memcpy(halves, &ends, STEP);
        return (halves[0] | halves[1]) != 0;
    }

    /// For one byte or for a step of them.
    template <class B>
    decltype(B{} == B{1}) IsEnd(B before, B last, B behind) const noexcept {
        constexpr std::uint8_t high = 0x80, blank = ' ', lf = '\n', cr = '\r', equals = '=';
        const auto fits = ((before | m_Before.bits) == m_Before.value) | (before >= high);
        const auto lastFits = ((last | m_Last.bits) == m_Last.value) | (last >= high);
        const auto isBorder = ((behind <= blank) & (behind != lf) & (behind != cr)) | (behind == equals);
        return fits & lastFits & isBorder;
    }

    Pattern m_Last;
    Pattern m_Before;
};
