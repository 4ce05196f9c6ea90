#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// Searches a text for places where a key could end: its last two elements, and behind them a blank, a NUL or '='.
/// Nearly all bytes of a section drop out here, 32 at a step. It may find too much (bytes from 0x80 on pass for every
/// element), never too little.
class NameEndSearch {
public:
    /// @param folded  the key in lower case, not empty
    explicit NameEndSearch(std::wstring_view folded) noexcept
        : m_Last(Pattern::Of(folded.back())),
          m_Before(folded.size() > 1 ? Pattern::Of(folded[folded.size() - 2]) : Pattern{-1, -1}) {}

    /// Position of the last element of a possible key at or behind start, which must not be 0; the text's size when
    /// there is none.
    std::size_t Find(std::string_view text, std::size_t start) const noexcept {
        std::size_t at = start;
        for (; at + STEP < text.size(); at += STEP) {
            if (!IsInStep(text.data() + at)) continue;
            for (const std::size_t half : {std::size_t{0}, HALF}) {
                const std::size_t end = FirstEnd(text.data() + at + half);
                if (end < HALF) return at + half + end;
            }
        }
        while (at + 1 < text.size() && !IsEnd(text.data() + at)) ++at;
        return at + 1 < text.size() ? at : text.size();
    }

private:
    static constexpr std::size_t STEP = 32;
    static constexpr std::size_t HALF = 16;  // what the registers of every machine hold
    using Bytes = std::int8_t __attribute__((vector_size(HALF)));

    /// A byte fits if it equals value after the bits are set. The case bit makes a letter fit in both cases.
    struct Pattern {
        std::int8_t bits;
        std::int8_t value;
        static constexpr Pattern Of(wchar_t element) noexcept {
            if (element < 0 || element >= 0x80) return {0, -1};  // only bytes from 0x80 on, which pass anyway
            const bool isLetter = element >= L'a' && element <= L'z';
            return {static_cast<std::int8_t>(isLetter ? 0x20 : 0), static_cast<std::int8_t>(element)};
        }

        /// For one byte or for a register of them; bytes from 0x80 on are negative.
        template <class B>
        auto Fits(B byte) const noexcept {
            return ((byte | bits) == value) | (byte < 0);
        }
    };

    static Bytes Load(const char* at) noexcept {
        Bytes bytes;
        std::memcpy(&bytes, at, HALF);
        return bytes;
    }

    /// The bytes of a half that have both elements; what stands behind is not looked at: the two alone are rare.
    auto Fitting(const char* at) const noexcept { return m_Before.Fits(Load(at - 1)) & m_Last.Fits(Load(at)); }

    bool IsInStep(const char* at) const noexcept {
        const auto fits = Fitting(at) | Fitting(at + HALF);
        std::uint64_t words[2];
        std::memcpy(words, &fits, HALF);
        return (words[0] | words[1]) != 0;
    }

    /// The first end in a half; HALF when there is none.
    std::size_t FirstEnd(const char* at) const noexcept {
        static_assert(std::endian::native == std::endian::little);  // a byte's place in a word
        const auto fits = Fitting(at);
        std::uint64_t words[2];
        std::memcpy(words, &fits, HALF);
        for (const std::size_t word : {std::size_t{0}, std::size_t{1}}) {
            for (std::uint64_t rest = words[word]; rest != 0;) {
                const auto byte = static_cast<std::size_t>(std::countr_zero(rest)) / 8;
                if (IsBorder(at[word * 8 + byte + 1])) return word * 8 + byte;
                rest &= ~(std::uint64_t{0xFF} << (byte * 8));
            }
        }
        return HALF;
    }

    static bool IsBorder(char byte) noexcept {
        return byte == '=' || (byte >= 0 && byte <= ' ' && byte != '\n' && byte != '\r');
    }

    bool IsEnd(const char* at) const noexcept {
        return IsBorder(at[1]) && m_Last.Fits(static_cast<std::int8_t>(at[0])) &&
               m_Before.Fits(static_cast<std::int8_t>(at[-1]));
    }

    Pattern m_Last;
    Pattern m_Before;
};
