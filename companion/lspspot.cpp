#include "lspspot.h"

#include <algorithm>
#include <tuple>

#include "veltrane/platform/text/encoding.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;

/// The columns of one line. The text around the names and values of an INI file is ASCII, so places and widths
/// determine them, whatever the encoding of the file.
class LineColumns {
public:
    LineColumns(const PlacedLine& placed, const LineUnits& units)
        : m_Line(*placed.line), m_Encoding(placed.source->view.encoding), m_Units(units) {
        const bool hasMark = units.text && m_Line.number == 1 && m_Encoding == SourceEncoding::Utf8WithMark;
        if (hasMark) m_nMark = WidthOf("\xEF\xBB\xBF", m_Units.unit);
    }

    TextRange Name() const { return Range(NameBegin(), NameEnd()); }
    TextRange Value() const { return ValuePart(0, m_Line.value.GetLength()); }
    TextRange ValuePart(int begin, int end) const {
        const int at = NameEnd() + Between(m_Line.namePlace.End(), m_Line.valuePlace.start);
        return Range(at + Width(m_Line.value.Left(begin)), at + Width(m_Line.value.Left(end)));
    }
    // Without the text the end may be too far, which counts as the end of the line: no sign is wider than its bytes.
    TextRange Whole() const {
        const int width = Between(m_Line.place.start, m_Line.place.End());
        const bool isKnown = m_Units.text && m_Line.number <= m_Units.text->LineCount();
        return Range(m_nMark, isKnown ? WidthOf(m_Units.text->Line(m_Line.number - 1), m_Units.unit) : m_nMark + width);
    }
    /// The name of a registry's value, without its quotes, or the text after it.
    TextRange OfRegistry(LinePart part) const {
        const std::string_view text = m_Units.text ? m_Units.text->Line(m_Line.number - 1) : std::string_view{};
        const std::size_t begin = text.find('"') + 1;
        std::size_t end = begin;
        while (end < text.size() && text[end] != '"') end += text[end] == '\\' ? 2 : 1;
        const std::size_t equals = text.find('=', std::min(end, text.size()));
        if (begin == 0 || equals == text.npos) return Whole();
        const auto columnAt = [&](std::size_t at) { return WidthOf(text.substr(0, at), m_Units.unit); };
        return part == LinePart::Key ? Range(columnAt(begin), columnAt(end))
                                     : Range(columnAt(equals + 1), columnAt(text.size()));
    }

private:
    int NameBegin() const { return m_nMark + Between(m_Line.place.start, m_Line.namePlace.start); }
    int NameEnd() const { return NameBegin() + Width(m_Line.kind == Kind::Section ? m_Line.section : m_Line.key); }
    int Width(CStringView text) const { return WidthOf(ToUtf8(text), m_Units.unit); }
    TextRange Range(int begin, int end) const { return {{m_Line.number - 1, begin}, {m_Line.number - 1, end}}; }
    int Between(std::uint32_t begin, std::uint32_t end) const {
        const bool isWide =
            m_Encoding == SourceEncoding::Utf16LittleEndian || m_Encoding == SourceEncoding::Utf16BigEndian;
        return static_cast<int>((end - begin) / (isWide ? 2 : 1));
    }

    const SourceLine& m_Line;
    SourceEncoding m_Encoding;
    LineUnits m_Units;
    int m_nMark = 0;
};

}  // namespace

TextRange RangeOf(const PlacedLine& placed, LinePart part, const LineUnits& units) {
    const LineColumns columns{placed, units};
    const bool isSection = placed.line->kind == Kind::Section;
    const bool isEntry = placed.line->kind == Kind::Entry;
    if (part == LinePart::Line || (!isSection && !isEntry)) return columns.Whole();
    if (placed.source->layer == OptionLayer::Registry) return isEntry ? columns.OfRegistry(part) : columns.Whole();
    return isEntry && part == LinePart::Value ? columns.Value() : columns.Name();
}

std::vector<ReferenceSpan> ReferencesIn(const PlacedLine& placed, const LineUnits& units) {
    std::vector<ReferenceSpan> spans;
    if (placed.line->kind != Kind::Entry || placed.source->layer == OptionLayer::Registry) return spans;
    const LineColumns columns{placed, units};
    int open = 0;
    for (const CString& name : ReferencesOf(placed.line->value)) {
        open = placed.line->value.Find(L'%', open);
        const int end = open + name.GetLength() + 2;
        spans.push_back({name, columns.ValuePart(open, end)});
        open = end;
    }
    return spans;
}

bool Holds(const TextRange& range, const TextPosition& position) {
    const auto order = [](const TextPosition& at) { return std::tie(at.line, at.column); };
    return order(range.begin) <= order(position) && order(position) <= order(range.end);
}

}  // namespace veltrane::config
