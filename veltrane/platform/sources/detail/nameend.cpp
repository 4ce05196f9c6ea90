#include "veltrane/platform/sources/detail/nameend.h"

#include <bit>
#include <cstring>

#include "veltrane/platform/text/characters.h"

#if defined(__x86_64__) && __has_include(<sys/platform/x86.h>)
#include <immintrin.h>
#include <sys/platform/x86.h>
#define VELTRANE_KNOWS_AVX2 1
#endif

namespace veltrane::detail {

namespace {

constexpr std::size_t STEP = 16;  // what the registers of every machine hold
using Bytes = std::int8_t __attribute__((vector_size(STEP)));
using Words = std::uint64_t __attribute__((vector_size(STEP)));

/// For one byte or for a register of them; bytes from 0x80 on are negative.
template <class B>
auto Fits(NamePattern pattern, B byte) noexcept {
    return ((byte | pattern.bits) == pattern.value) | (byte < 0);
}

bool IsBorder(char byte) noexcept {
    return byte == '=' || (byte >= 0 && byte <= ' ' && byte != '\n' && byte != '\r');
}

bool IsEnd(const char* at, NamePattern before, NamePattern last) noexcept {
    const auto fits = [](NamePattern pattern, char byte) { return Fits(pattern, static_cast<std::int8_t>(byte)); };
    return IsBorder(at[1]) && fits(last, at[0]) && fits(before, at[-1]);
}

Bytes Load(const char* at) noexcept {
    Bytes bytes;
    std::memcpy(&bytes, at, STEP);
    return bytes;
}

/// Moves on to the first end; false when whole steps hold none, with less than a step left. What stands behind the two
/// elements is looked at last: the two alone are rare.
bool FindInSteps(std::string_view text, std::size_t& at, NamePattern before, NamePattern last) noexcept {
    for (; at + STEP < text.size(); at += STEP) {
        const char* const step = text.data() + at;
        const auto fits = reinterpret_cast<Words>(Fits(before, Load(step - 1)) & Fits(last, Load(step)));
        if ((fits[0] | fits[1]) == 0) continue;
        for (std::size_t byte = 0; byte < STEP; ++byte) {
            if (!IsEnd(step + byte, before, last)) continue;
            at += byte;
            return true;
        }
    }
    return false;
}

#ifdef VELTRANE_KNOWS_AVX2
/// FindInSteps with wider registers; written out, as one can not be handed to a function without them.
[[gnu::target("avx2")]] bool FindInWideSteps(std::string_view text, std::size_t& at, NamePattern before,
                                             NamePattern last) noexcept {
    constexpr std::size_t WIDE = 32;
    using WideBytes = std::int8_t __attribute__((vector_size(WIDE)));
    std::size_t step = at;
    for (; step + WIDE < text.size(); step += WIDE) {
        WideBytes first;
        WideBytes second;
        std::memcpy(&first, text.data() + step - 1, WIDE);
        std::memcpy(&second, text.data() + step, WIDE);
        const auto fits = (((first | before.bits) == before.value) | first) &  // in their signs
                          (((second | last.bits) == last.value) | second);
        auto mask = static_cast<std::uint32_t>(_mm256_movemask_epi8(reinterpret_cast<__m256i>(fits)));
        for (; mask != 0; mask &= mask - 1) {
            const std::size_t end = step + static_cast<std::size_t>(std::countr_zero(mask));
            if (!IsBorder(text[end + 1])) continue;
            at = end;
            return true;
        }
    }
    at = step;
    return false;
}

bool HasAvx2() noexcept {
    static const bool hasAvx2 = CPU_FEATURE_ACTIVE(AVX2);
    return hasAvx2;
}
#endif

}  // namespace

NamePattern NamePattern::Of(wchar_t element) noexcept {
    const wchar_t folded = FoldCharacter(element);
    if (!IsAscii(folded)) return {0, -1};  // only bytes from 0x80 on, which fit anyway
    const bool isLetter = folded >= L'a' && folded <= L'z';
    return {static_cast<std::int8_t>(isLetter ? 0x20 : 0), static_cast<std::int8_t>(folded)};
}

std::size_t NameEndSearch::Find(std::string_view text, std::size_t start) const noexcept {
    std::size_t at = start;
#ifdef VELTRANE_KNOWS_AVX2
    if (HasAvx2() && FindInWideSteps(text, at, m_Before, m_Last)) return at;
#endif
    if (FindInSteps(text, at, m_Before, m_Last)) return at;
    while (at + 1 < text.size() && !IsEnd(text.data() + at, m_Before, m_Last)) ++at;
    return at + 1 < text.size() ? at : text.size();
}

}  // namespace veltrane::detail
