// What a key, a reference, a section or a naming rule means where the cursor is.
#include <algorithm>

#include "askedoption.h"
#include "commands.h"
#include "lspdiagnostics.h"
#include "lsplookup.h"
#include "lspparams.h"
#include "lsprequests.h"
#include "optiontext.h"
#include "places.h"
#include "printable.h"
#include "rules.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;

/// A text with a title and blocks that keep their columns, as the client can show it.
class HoverText {
public:
    explicit HoverText(bool isMarkdown) : m_IsMarkdown(isMarkdown) {}

    void AddTitle(const std::string& name, const std::string& rest) {
        AddParagraph((m_IsMarkdown ? "**" + Escaped(name) + "**" : name) + (rest.empty() ? "" : ", " + Plain(rest)));
    }
    void AddText(const std::string& text) { AddParagraph(Plain(text)); }
    void AddBlock(const std::string& text) {
        AddParagraph(m_IsMarkdown ? Fence(text) + "text\n" + text + Fence(text) : text);
    }
    bool IsEmpty() const { return m_Text.empty(); }

    LspJson Json() const { return {{"kind", m_IsMarkdown ? "markdown" : "plaintext"}, {"value", m_Text}}; }

private:
    void AddParagraph(const std::string& text) {
        if (!text.empty()) m_Text += (m_Text.empty() ? "" : "\n\n") + text;
    }
    std::string Plain(const std::string& text) const { return m_IsMarkdown ? Escaped(text) : text; }

    static std::string Escaped(const std::string& text) {
        std::string escaped;
        for (const char byte : text) {
            if (std::string_view{"\\`*_{}[]<>#|~&"}.find(byte) != std::string_view::npos) escaped += '\\';
            escaped += byte;
        }
        return escaped;
    }
    // One that the text does not hold.
    static std::string Fence(const std::string& text) {
        std::string fence = "```";
        while (text.find(fence) != std::string::npos) fence += '`';
        return fence;
    }

    bool m_IsMarkdown;
    std::string m_Text;
};

Request Asking(const CString& option) {
    Request request;
    request.words.push_back(ToUtf8(option));
    return request;
}

void AddOption(HoverText& text, LspAnalysis& analysis, const LineOption& option) {
    const XOptionDefinition& row = *option.row;
    const CString label = LabelOf(row, option.index);
    text.AddTitle(ToUtf8(label), detail::KindOf(row) + ", [" + detail::SectionTitle(row.eSection) + "]");
    const std::vector<detail::OptionText> texts = detail::GetOptionTexts();
    const auto described = std::ranges::find(texts, &row, &detail::OptionText::row);
    if (described != texts.end()) text.AddText(described->description);
    text.AddBlock(Show(Asking(label), analysis.startup).text);
}

// The steps of the whole value, if that is in force; else the line that the reference would lead to.
void AddReference(HoverText& text, LspAnalysis& analysis, const LspSpot& spot) {
    const std::optional<LineOption> option = OptionOf(analysis, spot.placed);
    const std::string name = '%' + ToUtf8(Printable(spot.reference)) + '%';
    if (option && option->isInForce) {
        const CString label = LabelOf(*option->row, option->index);
        text.AddTitle(name, "a step of " + ToUtf8(label));
        text.AddBlock(ExplainOptions(Asking(label), analysis.startup).text);
        return;
    }
    text.AddTitle(name, "in a value that is not in force");
    for (const PlacedLine& line : LinesOfReference(analysis, spot.placed, spot.reference)) {
        const CString place = PlaceText({line.source->path, line.line->number, line.line->section});
        text.AddText(ToUtf8(FormatText(L"%s: %s", place, Printable(line.line->value))));
        break;
    }
}

// Rules know the line of their new text.
void AddRule(HoverText& text, const LspAnalysis& analysis, const PlacedLine& placed) {
    for (const OptionRule& rule : AllRules(analysis.startup.options)) {
        if (!IsAt(rule.origin, placed)) continue;
        text.AddTitle(ToUtf8(Printable(rule.oldText)), rule.isInForce ? "naming rule" : "naming rule, hidden");
        const CString by = rule.newText.IsEmpty() ? CString{L"nothing"} : L"'" + Printable(rule.newText) + L"'";
        text.AddText(ToUtf8(FormatText(L"From version %d on, '%s' is replaced by %s in names of %Ss.", rule.version,
                                       Printable(rule.oldText), by, KindOf(rule))));
        if (!rule.isInForce)
            text.AddText("The user file has a section of this version without this rule, so it is not in force.");
    }
}

std::string KeysOf(enumCfgSection section) {
    std::string keys;
    for (const detail::OptionText& option : detail::GetOptionTexts()) {
        if (option.row->eSection == section && !IsRule(*option.row)) keys += (keys.empty() ? "" : ", ") + option.key;
    }
    return keys;
}

void AddSection(HoverText& text, const LspAnalysis& analysis, const CString& section) {
    const SectionUse use = analysis.run.FindSection(section);
    if (!use.isKnown) return;
    text.AddTitle('[' + ToUtf8(section) + ']', use.isOfOtherDatabase ? "of another database" : "");
    if (analysis.run.HoldsRules(use.section)) {
        text.AddText(
            "Naming rules: from the version in the section's name on, each key is replaced by its value wherever it "
            "occurs in a name.");
    } else {
        text.AddText("Options: " + KeysOf(use.section));
    }
}

void AddFindings(HoverText& text, const LspView& view, const LspSpot& spot, const TextPosition& position) {
    for (const LineFinding& found : FindingsIn(view.analysis, view.source)) {
        if (!(found.placed == spot.placed) || !Holds(found.Range(view.Units()), position)) continue;
        const LintRow& row = RowOf(found.finding->code);
        text.AddText(std::string{row.name} + ", " + row.title + ": " + row.explanation);
    }
}

}  // namespace

LspJson Hover(LspWorld& world, const LspView& view, const LspJson& params) {
    const TextPosition position = PositionIn(params.at("position"));
    const std::optional<LspSpot> spot = SpotAt(view, position);
    if (!spot) return {};
    HoverText text{world.client.ShowsMarkdown()};
    const std::optional<CString> section = SectionOf(view.analysis, spot->placed);
    const std::optional<LineOption> option = OptionOf(view.analysis, spot->placed);
    if (!spot->reference.IsEmpty()) {
        AddReference(text, view.analysis, *spot);
    } else if (spot->part == LinePart::Section && section) {
        AddSection(text, view.analysis, *section);
    } else if (spot->part != LinePart::Line && option) {
        AddOption(text, view.analysis, *option);
    } else if (spot->part != LinePart::Line) {
        AddRule(text, view.analysis, spot->placed);
    }
    AddFindings(text, view, *spot, position);
    if (text.IsEmpty()) return {};
    return {{"contents", text.Json()}, {"range", RangeJson(spot->range)}};
}

}  // namespace veltrane::config
