// The actions for a finding: apply its suggestion, remove a line that is never read, silence it.
#include <algorithm>
#include <set>

#include "lspdiagnostics.h"
#include "lspparams.h"
#include "lsprequests.h"
#include "nametext.h"
#include "printable.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;

struct TextEdit {
    TextRange range;
    std::string text;
};

class Actions {
public:
    explicit Actions(const LspView& view, const LspTool& tool) : m_View(view), m_Tool(tool) {}

    void Add(const LineFinding& found) {
        m_Diagnostic = DiagnosticJson(found, m_View.Units(), m_Tool);
        AddSuggestion(found);
        if (found.IsNeverRead()) AddRemoval(*found.placed.line);
        AddSilence(found);
    }

    LspJson Release() { return std::move(m_Actions); }

private:
    void AddAction(const CString& title, const std::vector<TextEdit>& edits, bool isPreferred) {
        LspJson changes = LspJson::array();
        for (const auto& [range, text] : edits) changes.push_back({{"range", RangeJson(range)}, {"newText", text}});
        m_Actions.push_back({{"title", ToUtf8(title)},
                             {"kind", "quickfix"},
                             {"isPreferred", isPreferred},
                             {"diagnostics", LspJson::array({m_Diagnostic})},
                             {"edit", {{"changes", {{m_View.document.uri, changes}}}}}});
    }

    void AddSuggestion(const LineFinding& found) {
        const CString& meant = found.finding->suggestion;
        const LinePart part = found.finding->part;
        const bool isSection = meant[0] == L'[';
        const bool isRegistry = m_View.source.layer == OptionLayer::Registry;
        if (meant.IsEmpty() || part == LinePart::Line || (isRegistry && part != LinePart::Key)) return;
        if (isSection && part == LinePart::Key) {
            if (!isRegistry) AddMove(*found.placed.line, meant);
            return;
        }
        const CString text = isSection ? WithoutBrackets(meant) : meant;
        if (const std::optional<TextRange> range = MeantRange(found))
            AddAction(FormatText(L"Change to '%s'", Printable(text)), {{*range, ToUtf8(text)}}, /*isPreferred*/ true);
    }

    // In a value only the name of a reference is replaced, which the finding names.
    std::optional<TextRange> MeantRange(const LineFinding& found) const {
        if (found.finding->part != LinePart::Value) return found.Range(m_View.Units());
        for (const auto& [name, range] : ReferencesIn(found.placed, m_View.Units())) {
            if (found.finding->text.Find(Printable(name)) < 0) continue;
            return TextRange{{range.begin.line, range.begin.column + 1}, {range.end.line, range.end.column - 1}};
        }
        return {};
    }

    // To the end of the section, which may have to be made.
    void AddMove(const SourceLine& line, const CString& section) {
        const CString name = WithoutBrackets(section);
        const SourceLine* last = nullptr;
        for (const SourceLine& other : m_View.source.view.lines) {
            const bool isOfIt = other.section.CompareNoCase(name) == 0 && other.kind != Kind::Blank &&
                                other.reason != SourceLine::Reason::DuplicateSection;
            if (isOfIt && other.number != line.number) last = &other;
        }
        const DocumentText& text = m_View.document.text;
        const std::string end{text.LineEnd(0)};
        const int number = last ? last->number - 1 : text.LineCount() - 1;
        const TextPosition at{number, WidthOf(text.Line(number), m_View.unit)};
        std::string moved = end + std::string{text.Line(line.number - 1)};
        if (!last) moved = (text.Line(number).empty() ? "" : end) + ToUtf8(section) + moved + end;
        AddAction(FormatText(L"Move to %s", Printable(section)),
                  {{{at, at}, moved}, {LinesRange(line.number, line.number), {}}},
                  /*isPreferred*/ true);
    }

    // Lines with their ends. Lines at the end of the text are removed with the end before them.
    TextRange LinesRange(int first, int last) const {
        const DocumentText& text = m_View.document.text;
        const bool isAtEnd = last >= text.LineCount();
        if (!isAtEnd) return {{first - 1, 0}, {last, 0}};
        const TextPosition end{last - 1, WidthOf(text.Line(last - 1), m_View.unit)};
        if (first < 2) return {{0, 0}, end};
        return {{first - 2, WidthOf(text.Line(first - 2), m_View.unit)}, end};
    }

    // Without its header a section would become part of the one before it.
    void AddRemoval(const SourceLine& line) {
        const bool isSection = line.kind == Kind::Section;
        const std::vector<SourceLine>& lines = m_View.source.view.lines;
        auto end = lines.begin() + line.number;
        if (isSection)
            end = std::find_if(end, lines.end(), [](const SourceLine& other) { return other.kind == Kind::Section; });
        const int last = static_cast<int>(end - lines.begin());
        const CString title = isSection
                                  ? FormatText(L"Remove the section [%s], which is never read", Printable(line.section))
                                  : CString{L"Remove the line, which is never read"};
        AddAction(title, {{LinesRange(line.number, last), {}}}, /*isPreferred*/ false);
    }

    // A registry begins with its own header.
    void AddSilence(const LineFinding& found) {
        if (found.finding->code == LintCode::C23) return;
        const std::string code = RowOf(found.finding->code).name;
        const int line = found.finding->line;
        if (!m_Silenced.emplace(line, code).second) return;
        const DocumentText& text = m_View.document.text;
        TextPosition at = RangeOf(found.placed, LinePart::Line, m_View.Units()).begin;
        const bool isAfterHeader = line == 0 && m_View.source.layer == OptionLayer::Registry && text.LineCount() > 1;
        if (isAfterHeader) at = {1, 0};
        const CString title =
            FormatText(L"Silence %s %s", FromUtf8(code), CString{line == 0 ? L"in this file" : L"on this line"});
        const std::string comment =
            (line == 0 ? "; lint: file " : "; lint: ") + code + std::string{text.LineEnd(at.line)};
        AddAction(title, {{{at, at}, comment}}, /*isPreferred*/ false);
    }

    const LspView& m_View;
    const LspTool& m_Tool;
    LspJson m_Diagnostic;
    LspJson m_Actions = LspJson::array();
    std::set<std::pair<int, std::string>> m_Silenced;
};

// The client may want only actions of other kinds.
bool IsWanted(const LspJson& params) {
    const LspJson context = params.value("context", LspJson{});
    const LspJson only = context.is_object() ? context.value("only", LspJson{}) : LspJson{};
    const auto covers = [](const LspJson& kind) {  // the empty kind is that of all
        return kind == "quickfix" || (kind.is_string() && kind.get_ref<const std::string&>().empty());
    };
    return !only.is_array() || std::ranges::any_of(only, covers);
}

}  // namespace

LspJson ListActions(LspWorld& world, const LspView& view, const LspJson& params) {
    const TextRange range = RangeIn(params.at("range"));
    if (!IsWanted(params)) return {};
    Actions actions{view, world.Tool()};
    for (const LineFinding& found : FindingsIn(view.analysis, view.source)) {
        const int line = found.placed.line->number - 1;
        if (range.begin.line <= line && line <= range.end.line) actions.Add(found);
    }
    return actions.Release();
}

}  // namespace veltrane::config
