#include "veltrane/platform/sources/detail/keyendsearch.h"

#if __has_include(<sys/platform/x86.h>) && !defined(__clang__)  // its _Bool is not valid C++ for clang
#include <sys/platform/x86.h>
#endif

#include "veltrane/platform/text/characters.h"

namespace veltrane::detail {

namespace {

constexpr std::size_t STEP = 128;  // bytes looked at together

/// Negative when the byte fits; a byte from 0x80 on is negative by itself.
std::int8_t Fits(NamePattern pattern, std::int8_t byte) noexcept {
    const bool isEqual = static_cast<std::int8_t>(byte | pattern.bits) == pattern.value;
    return static_cast<std::int8_t>(byte | -static_cast<int>(isEqual));
}

bool IsBorder(char byte) noexcept {
    return byte == '=' || (static_cast<unsigned char>(byte) <= ' ' && byte != '\n' && byte != '\r');
}

/// Whether the two elements stand anywhere in a step, the first of them from its front on. Has no jump inside, so that
/// compilers process a register full of bytes at a time.
bool IsInStep(const char* front, NamePattern before, NamePattern last) noexcept {
    std::int8_t any = 0;
    for (std::size_t i = 0; i < STEP; ++i) {
        const auto first = static_cast<std::int8_t>(front[i]);
        const auto second = static_cast<std::int8_t>(front[i + 1]);
        any = static_cast<std::int8_t>(any | (Fits(before, first) & Fits(last, second)));
    }
    return any < 0;
}

bool AreInOrder(const char* at, NamePattern before, NamePattern last) noexcept {
    return (Fits(before, static_cast<std::int8_t>(at[-1])) & Fits(last, static_cast<std::int8_t>(at[0]))) < 0;
}

[[gnu::always_inline]] inline std::size_t FindIn(std::string_view text, std::size_t start, NamePattern before,
                                                 NamePattern last) noexcept {
    std::size_t at = start;
    while (at + 1 < text.size()) {
        const bool isWhole = at + STEP < text.size();
        if (isWhole && !IsInStep(text.data() + at - 1, before, last)) {
            at += STEP;
            continue;
        }
        const std::size_t end = isWhole ? at + STEP : text.size() - 1;
        for (; at < end; ++at) {
            if (IsBorder(text[at + 1]) && AreInOrder(text.data() + at, before, last)) return at;
        }
    }
    return text.size();
}

#ifdef CPU_FEATURE_ACTIVE
// The same with registers twice as wide: a question to a small file takes a tenth less.
[[gnu::target("avx2")]] std::size_t FindWide(std::string_view text, std::size_t start, NamePattern before,
                                             NamePattern last) noexcept {
    return FindIn(text, start, before, last);
}
#endif

}  // namespace

NamePattern NamePattern::Of(wchar_t element) noexcept {
    const wchar_t folded = FoldCharacter(element);
    if (!IsAscii(folded)) return {0, -1};  // only bytes from 0x80 on, which fit anyway
    const bool isLetter = folded >= L'a' && folded <= L'z';
    return {static_cast<std::int8_t>(isLetter ? 0x20 : 0), static_cast<std::int8_t>(folded)};
}

std::size_t KeyEndSearch::Find(std::string_view text, std::size_t start) const noexcept {
#ifdef CPU_FEATURE_ACTIVE
    if (CPU_FEATURE_ACTIVE(AVX2)) return FindWide(text, start, m_Before, m_Last);
#endif
    return FindIn(text, start, m_Before, m_Last);
}

}  // namespace veltrane::detail
