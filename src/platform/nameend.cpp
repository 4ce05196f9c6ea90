#include "platform/detail/nameend.h"

#include <bit>
#include <cstring>

#include "platform/characters.h"

#if defined(__x86_64__) && __has_include(<sys/platform/x86.h>)
#include <immintrin.h>
#include <sys/platform/x86.h>
#define VELTRANE_KNOWS_AVX2 1
#endif

namespace {

constexpr std::size_t HALF = 16;  // what the registers of every machine hold
constexpr std::size_t STEP = 2 * HALF;
using Bytes = std::int8_t __attribute__((vector_size(HALF)));
using Words = std::uint64_t __attribute__((vector_size(HALF)));

/// For one byte or for a register of them; bytes from 0x80 on are negative.
template <class B>
auto Fits(NamePattern pattern, B byte) noexcept {
    return ((byte | pattern.bits) == pattern.value) | (byte < 0);
}

Bytes Load(const char* at) noexcept {
    Bytes bytes;
    std::memcpy(&bytes, at, HALF);
    return bytes;
}

/// 0xFF for the bytes of a half that have both elements; what stands behind is not looked at: the two alone are rare.
Words Fitting(const char* at, NamePattern before, NamePattern last) noexcept {
    return reinterpret_cast<Words>(Fits(before, Load(at - 1)) & Fits(last, Load(at)));
}

bool IsInStep(const char* at, NamePattern before, NamePattern last) noexcept {
    const Words fits = Fitting(at, before, last) | Fitting(at + HALF, before, last);
    return (fits[0] | fits[1]) != 0;
}

bool IsBorder(char byte) noexcept {
    return byte == '=' || (byte >= 0 && byte <= ' ' && byte != '\n' && byte != '\r');
}

/// The first end in a half; HALF when there is none.
std::size_t FirstEnd(const char* at, NamePattern before, NamePattern last) noexcept {
    static_assert(std::endian::native == std::endian::little);  // a byte's place in a word
    const Words fits = Fitting(at, before, last);
    for (const std::size_t word : {std::size_t{0}, std::size_t{1}}) {
        for (std::uint64_t rest = fits[word]; rest != 0;) {
            const std::size_t byte = word * 8 + static_cast<std::size_t>(std::countr_zero(rest)) / 8;
            if (IsBorder(at[byte + 1])) return byte;
            rest &= ~(std::uint64_t{0xFF} << (byte % 8 * 8));
        }
    }
    return HALF;
}

#ifdef VELTRANE_KNOWS_AVX2
/// FirstStep with registers as wide as a step; written out, as one can not be handed over without them.
[[gnu::target("avx2")]] std::size_t FirstWideStep(std::string_view text, std::size_t at, NamePattern before,
                                                  NamePattern last) noexcept {
    using WideBytes = std::int8_t __attribute__((vector_size(STEP)));
    for (; at + STEP < text.size(); at += STEP) {
        WideBytes first;
        WideBytes second;
        std::memcpy(&first, text.data() + at - 1, STEP);
        std::memcpy(&second, text.data() + at, STEP);
        const auto fits = (((first | before.bits) == before.value) | first) &  // in their signs
                          (((second | last.bits) == last.value) | second);
        if (_mm256_movemask_epi8(reinterpret_cast<__m256i>(fits)) != 0) break;
    }
    return at;
}

bool HasAvx2() noexcept {
    static const bool hasAvx2 = CPU_FEATURE_ACTIVE(AVX2);
    return hasAvx2;
}
#endif

/// Position of the first step, from at on, with both elements; where no whole step is left when there is none.
std::size_t FirstStep(std::string_view text, std::size_t at, NamePattern before, NamePattern last) noexcept {
#ifdef VELTRANE_KNOWS_AVX2
    if (HasAvx2()) return FirstWideStep(text, at, before, last);
#endif
    while (at + STEP < text.size() && !IsInStep(text.data() + at, before, last)) at += STEP;
    return at;
}

bool IsEnd(const char* at, NamePattern before, NamePattern last) noexcept {
    const auto fits = [](NamePattern pattern, char byte) { return Fits(pattern, static_cast<std::int8_t>(byte)); };
    return IsBorder(at[1]) && fits(last, at[0]) && fits(before, at[-1]);
}

}  // namespace

NamePattern NamePattern::Of(wchar_t element) noexcept {
    const wchar_t folded = FoldCharacter(element);
    if (!IsAscii(folded)) return {0, -1};  // only bytes from 0x80 on, which fit anyway
    const bool isLetter = folded >= L'a' && folded <= L'z';
    return {static_cast<std::int8_t>(isLetter ? 0x20 : 0), static_cast<std::int8_t>(folded)};
}

std::size_t NameEndSearch::Find(std::string_view text, std::size_t start) const noexcept {
    std::size_t at = FirstStep(text, start, m_Before, m_Last);
    for (; at + STEP < text.size(); at = FirstStep(text, at + STEP, m_Before, m_Last)) {
        for (const std::size_t half : {std::size_t{0}, HALF}) {
            const std::size_t end = FirstEnd(text.data() + at + half, m_Before, m_Last);
            if (end < HALF) return at + half + end;
        }
    }
    while (at + 1 < text.size() && !IsEnd(text.data() + at, m_Before, m_Last)) ++at;
    return at + 1 < text.size() ? at : text.size();
}
