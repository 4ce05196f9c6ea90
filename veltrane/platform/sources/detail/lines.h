#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "veltrane/platform/text/internal/trim.h"

namespace veltrane::detail {

/// The blanks of text files. 0x1A once marked the end of a file and may still stand there.
constexpr bool IsFileBlank(char byte) noexcept {
    return byte == ' ' || byte == '\t' || byte == '\v' || byte == '\f' || byte == '\x1A';
}

constexpr bool IsLineEnd(char byte) noexcept {
    return byte == '\n' || byte == '\r';
}

inline std::string_view WithoutLeadingBlanks(std::string_view text) noexcept {
    return TrimmedLeft(text, IsFileBlank);
}

inline std::string_view WithoutBlanks(std::string_view text) noexcept {
    return Trimmed(text, IsFileBlank);
}

/// Position of the line end at or after a position; the text's size on the last line.
inline std::size_t EndOfLine(std::string_view text, std::size_t at) noexcept {
    constexpr std::size_t step = 256;  // both kinds of end are searched in turn, neither far ahead of the other
    for (; at < text.size(); at += step) {
        std::string_view part = text.substr(at, step);
        part = part.substr(0, part.find('\n'));
        part = part.substr(0, part.find('\r'));
        if (at + part.size() < std::min(at + step, text.size())) return at + part.size();
    }
    return text.size();
}

/// Position after the line end that comes before a position; 0 on the first line.
inline std::size_t StartOfLine(std::string_view text, std::size_t at) noexcept {
    while (at > 0 && !IsLineEnd(text[at - 1])) --at;
    return at;
}

/// Walks over the lines of a text. A line ends at CR or LF; the empty line inside CR LF is harmless
/// to every reader. Each kind of line end is searched from where its last search stopped, so that text without one of
/// them, or without any, costs one pass.
class LineWalk {
public:
    explicit LineWalk(std::string_view text) noexcept : m_Text(text), m_Lf(Seek('\n')), m_Cr(Seek('\r')) {}

    bool Next(std::string_view& line) noexcept {
        if (m_At >= m_Text.size()) return false;
        if (m_Lf < m_At) m_Lf = Seek('\n');
        if (m_Cr < m_At) m_Cr = Seek('\r');
        const std::size_t end = std::min(m_Lf, m_Cr);
        line = m_Text.substr(m_At, end - m_At);
        m_At = end + 1;
        return true;
    }

    /// Whether the line given last is only the empty one inside CR LF.
    bool IsInsidePair() const noexcept {
        return m_At >= 2 && m_At <= m_Text.size() && m_Text[m_At - 1] == '\n' && m_Text[m_At - 2] == '\r';
    }

private:
    std::size_t Seek(char end) const noexcept { return std::min(m_Text.find(end, m_At), m_Text.size()); }

    std::string_view m_Text;
    std::size_t m_At = 0;
    std::size_t m_Lf;
    std::size_t m_Cr;
};

/// Number, from 1, of the line that holds a position.
inline int LineNumber(std::string_view text, std::size_t position) noexcept {
    const std::string_view before = text.substr(0, position + 1);
    int line = 1;
    for (std::size_t lf = before.find('\n'); lf < position; lf = before.find('\n', lf + 1)) ++line;
    for (std::size_t cr = before.find('\r'); cr < position; cr = before.find('\r', cr + 1)) {
        const bool isInsidePair = cr + 1 < before.size() && before[cr + 1] == '\n';
        if (!isInsidePair) ++line;
    }
    return line;
}

}  // namespace veltrane::detail
