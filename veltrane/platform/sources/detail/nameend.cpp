#include "veltrane/platform/sources/detail/nameend.h"

#include "veltrane/platform/text/characters.h"

namespace veltrane::detail {

namespace {

constexpr std::size_t STEP = 64;  // bytes looked at together

/// 1 or 0.
int Fits(NamePattern pattern, std::int8_t byte) noexcept {
    return static_cast<int>(static_cast<std::int8_t>(byte | pattern.bits) == pattern.value) |
           static_cast<int>(byte < 0);
}

bool IsBorder(char byte) noexcept {
    return byte == '=' || (static_cast<unsigned char>(byte) <= ' ' && byte != '\n' && byte != '\r');
}

/// Whether the two elements stand anywhere in a step, the first of them from its front on. Without a jump inside, so
/// that compilers look at a register full of bytes at a time.
bool IsInStep(const char* front, NamePattern before, NamePattern last) noexcept {
    std::int8_t any = 0;
    for (std::size_t i = 0; i < STEP; ++i) {
        const auto first = static_cast<std::int8_t>(front[i]);
        const auto second = static_cast<std::int8_t>(front[i + 1]);
        any = static_cast<std::int8_t>(any | (Fits(before, first) & Fits(last, second)));
    }
    return any != 0;
}

bool IsEnd(const char* at, NamePattern before, NamePattern last) noexcept {
    const auto first = static_cast<std::int8_t>(at[-1]);
    const auto second = static_cast<std::int8_t>(at[0]);
    return IsBorder(at[1]) && (Fits(before, first) & Fits(last, second)) != 0;
}

}  // namespace

NamePattern NamePattern::Of(wchar_t element) noexcept {
    const wchar_t folded = FoldCharacter(element);
    if (!IsAscii(folded)) return {0, -1};  // only bytes from 0x80 on, which fit anyway
    const bool isLetter = folded >= L'a' && folded <= L'z';
    return {static_cast<std::int8_t>(isLetter ? 0x20 : 0), static_cast<std::int8_t>(folded)};
}

std::size_t NameEndSearch::Find(std::string_view text, std::size_t start) const noexcept {
    std::size_t at = start;
    while (at + 1 < text.size()) {
        const bool isWhole = at + STEP < text.size();
        if (isWhole && !IsInStep(text.data() + at - 1, m_Before, m_Last)) {
            at += STEP;
            continue;
        }
        const std::size_t end = isWhole ? at + STEP : text.size() - 1;
        for (; at < end; ++at) {
            if (IsEnd(text.data() + at, m_Before, m_Last)) return at;
        }
    }
    return text.size();
}

}  // namespace veltrane::detail
