#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// The text of a document, and the positions in it that client and server exchange.

namespace veltrane::config {

/// What the columns of positions count.
enum class ColumnUnit { Utf16, Utf8 };

/// A place in a text, both from 0.
struct TextPosition {
    int line = 0;
    int column = 0;
};

struct TextRange {
    TextPosition begin;
    TextPosition end;
};

/// How many units a text in UTF-8 takes.
int WidthOf(std::string_view text, ColumnUnit unit);

/// A text in UTF-8. Its lines end at LF, CR or both. Every position is valid: outside a line it means the end of that
/// line, outside the text its end, and inside a character the character's start.
class DocumentText {
public:
    explicit DocumentText(std::string bytes);

    const std::string& Bytes() const { return m_Bytes; }
    int LineCount() const { return static_cast<int>(m_Starts.size()); }
    /// A line without its end; empty outside the text.
    std::string_view Line(int line) const;
    /// The end of a line as it is there; that of the first line, or LF, for one that has none.
    std::string_view LineEnd(int line) const;

    std::size_t OffsetInLine(const TextPosition& position, ColumnUnit unit) const;
    /// Replaces a part of the text; ends that come in the wrong order are swapped.
    void Replace(const TextRange& range, ColumnUnit unit, std::string_view text);

private:
    std::size_t OffsetOf(const TextPosition& position, ColumnUnit unit) const;
    void FindLines();

    std::string m_Bytes;
    std::vector<std::size_t> m_Starts;  // of the lines
};

}  // namespace veltrane::config
