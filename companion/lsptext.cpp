#include "lsptext.h"

#include <algorithm>

namespace veltrane::config {

namespace {

constexpr std::string_view LINE_ENDS = "\r\n";

constexpr bool IsInsideCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Bytes of four make pairs of surrogates.
constexpr int UnitsOf(char first, ColumnUnit unit) {
    if (unit == ColumnUnit::Utf8) return 1;
    if (IsInsideCharacter(first)) return 0;
    return static_cast<unsigned char>(first) >= 0xF0 ? 2 : 1;
}

}  // namespace

int WidthOf(std::string_view text, ColumnUnit unit) {
    int width = 0;
    for (const char byte : text) width += UnitsOf(byte, unit);
    return width;
}

DocumentText::DocumentText(std::string bytes) : m_Bytes(std::move(bytes)) {
    FindLines();
}

// Each kind of end is searched from where its last search stopped.
void DocumentText::FindLines() {
    m_Starts.assign(1, 0);
    std::size_t lf = m_Bytes.find('\n');
    std::size_t cr = m_Bytes.find('\r');
    while (std::min(lf, cr) != std::string::npos) {
        const std::size_t start = std::min(lf, cr) + (cr + 1 == lf ? 2 : 1);
        m_Starts.push_back(start);
        if (lf < start) lf = m_Bytes.find('\n', start);
        if (cr < start) cr = m_Bytes.find('\r', start);
    }
}

std::string_view DocumentText::Line(int line) const {
    if (line < 0 || line >= LineCount()) return {};
    const std::size_t start = m_Starts[static_cast<std::size_t>(line)];
    const bool isLast = line + 1 == LineCount();
    const std::size_t end = isLast ? m_Bytes.size() : m_Starts[static_cast<std::size_t>(line) + 1];
    const std::string_view text = std::string_view{m_Bytes}.substr(start, end - start);
    return text.substr(0, text.find_first_of(LINE_ENDS));
}

std::string_view DocumentText::LineEnd(int line) const {
    if (LineCount() == 1) return "\n";
    if (line < 0 || line + 1 >= LineCount()) line = 0;
    const std::size_t start = m_Starts[static_cast<std::size_t>(line)] + Line(line).size();
    return std::string_view{m_Bytes}.substr(start, m_Starts[static_cast<std::size_t>(line) + 1] - start);
}

std::size_t DocumentText::OffsetInLine(const TextPosition& position, ColumnUnit unit) const {
    const std::string_view line = Line(position.line);
    std::size_t offset = 0;
    for (int units = 0; offset < line.size() && units < position.column; ++offset) {
        units += UnitsOf(line[offset], unit);
        if (units > position.column) return offset;
    }
    while (unit == ColumnUnit::Utf16 && offset < line.size() && IsInsideCharacter(line[offset])) ++offset;
    while (unit == ColumnUnit::Utf8 && offset > 0 && offset < line.size() && IsInsideCharacter(line[offset])) --offset;
    return offset;
}

std::size_t DocumentText::OffsetOf(const TextPosition& position, ColumnUnit unit) const {
    if (position.line >= LineCount()) return m_Bytes.size();
    return m_Starts[static_cast<std::size_t>(std::max(position.line, 0))] + OffsetInLine(position, unit);
}

void DocumentText::Replace(const TextRange& range, ColumnUnit unit, std::string_view text) {
    const std::size_t ends[] = {OffsetOf(range.begin, unit), OffsetOf(range.end, unit)};
    const auto [begin, end] = std::minmax(ends[0], ends[1]);
    m_Bytes.replace(begin, end - begin, text);
    FindLines();
}

}  // namespace veltrane::config
