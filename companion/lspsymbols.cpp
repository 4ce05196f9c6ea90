// The outline of a document: sections with their keys, and what can be folded.
#include <algorithm>

#include "lspparams.h"
#include "lsprequests.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;

/// The kinds of the protocol.
enum class SymbolKind { Namespace = 3, Key = 20 };

/// A section with its lines, from its header to the last one that is not blank.
struct SectionLines {
    const SourceLine* header;
    std::vector<const SourceLine*> entries = {};
    const SourceLine* last;
};

std::vector<SectionLines> SectionsOf(const StartupSource& source) {
    std::vector<SectionLines> sections;
    for (const SourceLine& line : source.view.lines) {
        if (line.kind == Kind::Section) sections.push_back({.header = &line, .last = &line});
        if (sections.empty()) continue;
        if (line.kind == Kind::Entry) sections.back().entries.push_back(&line);
        if (line.kind == Kind::Entry || line.kind == Kind::Continuation) sections.back().last = &line;
    }
    return sections;
}

class Outline {
public:
    Outline(const LspView& view) : m_View(view) {}

    LspJson Tree() const {
        LspJson symbols = LspJson::array();
        for (const SectionLines& section : SectionsOf(m_View.source)) {
            LspJson symbol = Symbol(*section.header);
            symbol["range"]["end"] = PositionJson(Range(*section.last, LinePart::Line).end);
            symbol["children"] = LspJson::array();
            for (const SourceLine* const entry : section.entries) symbol["children"].push_back(Symbol(*entry));
            symbols.push_back(std::move(symbol));
        }
        return symbols;
    }

    /// For clients that do not support a tree.
    LspJson List() const {
        LspJson symbols = LspJson::array();
        for (const LspJson& section : Tree()) {
            symbols.push_back(Flat(section, ""));
            for (const LspJson& entry : section["children"]) symbols.push_back(Flat(entry, section["name"]));
        }
        return symbols;
    }

private:
    TextRange Range(const SourceLine& line, LinePart part) const {
        return RangeOf({&m_View.source, &line}, part, m_View.Units());
    }

    // The protocol requires names that are not empty.
    LspJson Symbol(const SourceLine& line) const {
        const bool isSection = line.kind == Kind::Section;
        const std::string name = ToUtf8(isSection ? line.section : line.key);
        const LspJson kind = static_cast<int>(isSection ? SymbolKind::Namespace : SymbolKind::Key);
        LspJson symbol{{"name", name.empty() ? "\"\"" : name},
                       {"kind", kind},
                       {"range", RangeJson(Range(line, LinePart::Line))},
                       {"selectionRange", RangeJson(Range(line, LinePart::Key))}};
        if (!isSection) symbol["detail"] = ToUtf8(line.value);
        return symbol;
    }

    LspJson Flat(const LspJson& symbol, const LspJson& container) const {
        return {{"name", symbol["name"]},
                {"kind", symbol["kind"]},
                {"location", {{"uri", m_View.document.uri}, {"range", symbol["range"]}}},
                {"containerName", container}};
    }

    const LspView& m_View;
};

void AddFolding(LspJson& foldings, int begin, int end, const char* kind) {
    if (begin >= end) return;
    foldings.push_back({{"startLine", begin - 1}, {"endLine", end - 1}, {"kind", kind}});
}

}  // namespace

LspJson ListSymbols(LspWorld& world, const LspView& view, const LspJson& /*params*/) {
    const Outline outline{view};
    return world.client.KnowsSymbolTrees() ? outline.Tree() : outline.List();
}

LspJson ListFoldings(LspWorld& /*world*/, const LspView& view, const LspJson& /*params*/) {
    LspJson foldings = LspJson::array();
    for (const SectionLines& section : SectionsOf(view.source)) {
        AddFolding(foldings, section.header->number, section.last->number, "region");
    }
    int begin = 0;  // of comments that follow one another
    for (const SourceLine& line : view.source.view.lines) {
        const bool isComment = line.kind == Kind::Comment;
        if (!isComment && begin > 0) AddFolding(foldings, begin, line.number - 1, "comment");
        begin = !isComment ? 0 : begin > 0 ? begin : line.number;
    }
    if (begin > 0) AddFolding(foldings, begin, static_cast<int>(view.source.view.lines.size()), "comment");
    return foldings;
}

}  // namespace veltrane::config
