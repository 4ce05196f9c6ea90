// The parts of a document that a client shows in colours.
#include <utility>

#include "lspdiagnostics.h"
#include "lsprequests.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;

/// In the order of the legend.
enum class Token { Section, Key, Value, Reference, Comment };

/// Encodes tokens as the protocol requires: each by its distance from the one before.
class Tokens {
public:
    explicit Tokens(const LspView& view) : m_View(view) {
        for (const LineFinding& found : FindingsIn(view.analysis, view.source)) {
            if (found.IsNeverRead()) m_NeverRead.insert(found.placed.line);
        }
    }

    LspJson Json() {
        for (const SourceLine& line : m_View.source.view.lines) AddLine(line);
        return {{"data", std::move(m_Data)}};
    }

private:
    void AddLine(const SourceLine& line) {
        const PlacedLine placed{&m_View.source, &line};
        const auto range = [&](LinePart part) { return RangeOf(placed, part, m_View.Units()); };
        const bool isNeverRead = m_NeverRead.contains(&line);
        if (line.kind == Kind::Comment) Add(range(LinePart::Line), Token::Comment, isNeverRead);
        if (line.kind == Kind::Section) Add(range(LinePart::Section), Token::Section, isNeverRead);
        if (line.kind != Kind::Entry) return;
        Add(range(LinePart::Key), Token::Key, isNeverRead);
        TextRange rest = range(LinePart::Value);
        for (const ReferenceSpan& reference : ReferencesIn(placed, m_View.Units())) {
            Add({rest.begin, reference.range.begin}, Token::Value, isNeverRead);
            Add(reference.range, Token::Reference, isNeverRead);
            rest.begin = reference.range.end;
        }
        Add(rest, Token::Value, isNeverRead);
    }

    void Add(const TextRange& range, Token token, bool isNeverRead) {
        const auto& [line, column] = range.begin;
        if (range.end.column <= column) return;
        m_Data.push_back(line - m_Last.line);
        m_Data.push_back(line == m_Last.line ? column - m_Last.column : column);
        m_Data.push_back(range.end.column - column);
        m_Data.push_back(static_cast<int>(token));
        m_Data.push_back(isNeverRead ? 1 : 0);
        m_Last = range.begin;
    }

    const LspView& m_View;
    std::set<const SourceLine*> m_NeverRead;
    TextPosition m_Last;
    LspJson m_Data = LspJson::array();
};

}  // namespace

LspJson TokenLegend() {
    return {{"tokenTypes", {"namespace", "property", "string", "variable", "comment"}},
            {"tokenModifiers", LspJson::array({"deprecated"})}};
}

LspJson ListTokens(LspWorld& /*world*/, const LspView& view, const LspJson& /*params*/) {
    return Tokens{view}.Json();
}

}  // namespace veltrane::config
