// What can be written where the cursor is.
#include <algorithm>
#include <set>

#include "askedoption.h"
#include "lsplookup.h"
#include "lspparams.h"
#include "lsprequests.h"
#include "nametext.h"
#include "optiontext.h"
#include "veltrane/platform/text/internal/indexformat.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;

/// The kinds of the protocol.
enum class ItemKind { Variable = 6, Module = 9, Property = 10, Value = 12 };

/// The bytes of a line that a word takes the place of, and what comes with it.
struct Part {
    std::size_t begin;
    std::size_t end;
    std::string before = {};
    std::string after = {};
};

class Items {
public:
    Items(const LspView& view, int line, const Part& part)
        : m_Range{{line, ColumnOf(view, line, part.begin)}, {line, ColumnOf(view, line, part.end)}}, m_Part(part) {}

    void Add(const CString& word, ItemKind kind, bool isThere, const std::string& detail = {},
             const std::string& documentation = {}) {
        const std::string label = ToUtf8(word);
        LspJson item{{"label", label},
                     {"kind", static_cast<int>(kind)},
                     {"sortText", (isThere ? "1" : "0") + label},
                     {"textEdit", {{"range", RangeJson(m_Range)}, {"newText", m_Part.before + label + m_Part.after}}}};
        if (!detail.empty()) item["detail"] = detail;
        if (!documentation.empty()) item["documentation"] = documentation;
        m_Items.push_back(std::move(item));
    }

    LspJson Release() { return std::move(m_Items); }

private:
    static int ColumnOf(const LspView& view, int line, std::size_t offset) {
        return WidthOf(view.document.text.Line(line).substr(0, offset), view.unit);
    }

    TextRange m_Range;
    Part m_Part;
    LspJson m_Items = LspJson::array();
};

/// What is asked: a line of a document and a place in it.
struct Question {
    const LspView& view;
    int line;
    std::string_view text;
    std::size_t at;

    std::string_view Before() const { return text.substr(0, at); }
    bool IsOfRegistry() const { return view.source.layer == OptionLayer::Registry; }
};

// The names of sections in a document as it spells them, and the keys of one of them, as far as they are there.
std::set<CString> SectionsIn(const LspView& view, int but) {
    std::set<CString> names;
    for (const SourceLine& line : view.source.view.lines) {
        if (line.kind == Kind::Section && line.number != but + 1) names.insert(Folded(line.section));
    }
    return names;
}

std::set<CString> KeysIn(const LspView& view, const CString& section, int but) {
    std::set<CString> names;
    for (const SourceLine& line : view.source.view.lines) {
        if (line.kind != Kind::Entry || line.number == but + 1) continue;
        const std::optional<CString> own = SectionOf(view.analysis, {&view.source, &line});
        if (own && IsSameName(*own, section)) names.insert(Folded(line.key));
    }
    return names;
}

// The section that a line is in; nothing before the first, and in a registry outside of the tool's keys.
std::optional<CString> SectionAt(const LspView& view, int number) {
    const std::vector<SourceLine>& lines = view.source.view.lines;
    for (int i = std::min(number, static_cast<int>(lines.size()) - 1); i >= 0; --i) {
        const SourceLine& line = lines[static_cast<std::size_t>(i)];
        if (line.kind == Kind::Section) return SectionOf(view.analysis, {&view.source, &line});
    }
    return {};
}

// The first unused number of a numbered name.
CString FreeName(const CString& form, const std::set<CString>& known) {
    for (int index = 1;; ++index) {
        CString name = FormatIndex(form, index);
        if (!known.contains(Folded(name))) return name;
    }
}

// The keys of a registry, below the root as it is typed.
void AddRegistryKeys(Items& items, const Question& asked, std::size_t begin, const std::set<CString>& known) {
    const std::size_t slash = asked.text.find('\\', begin);
    const std::string_view root =
        slash == asked.text.npos ? "HKEY_LOCAL_MACHINE" : asked.text.substr(begin, slash - begin);
    for (const RegistryKey& key : asked.view.analysis.run.RegistryKeys()) {
        items.Add(FromUtf8(root) + L"\\" + key.path, ItemKind::Module, known.contains(Folded(key.path)),
                  detail::SectionTitle(key.section));
    }
}

LspJson CompleteSection(const Question& asked) {
    const std::size_t begin = asked.text.find('[') + 1;
    const std::size_t close = asked.text.find(']', begin);
    if (asked.at > close) return {};
    const std::string after = close == asked.text.npos ? "]" : "";
    Items items{asked.view, asked.line, {begin, std::min(close, asked.text.size()), {}, after}};
    const std::set<CString> known = SectionsIn(asked.view, asked.line);
    if (asked.IsOfRegistry()) {
        AddRegistryKeys(items, asked, begin, known);
        return items.Release();
    }
    for (const enumCfgSection section : detail::GetOptionSections()) {
        const CString form = asked.view.analysis.startup.options.GetSectionName(section);
        if (form.IsEmpty()) continue;
        const CString name = form.Find(L"%d") < 0 ? form : FreeName(form, known);
        items.Add(name, ItemKind::Module, known.contains(Folded(name)), detail::SectionTitle(section));
    }
    return items.Release();
}

// In a registry a text has quotes, of which some may be there.
Part QuotedPart(const Question& asked, std::size_t begin, std::size_t end, const std::string& after) {
    const bool isOpen = begin < end && asked.text[begin] == '"';
    const bool isClosed = isOpen && after.empty() && end > begin + 1 && asked.text[end - 1] == '"';
    return {begin + (isOpen ? 1 : 0), end - (isClosed ? 1 : 0), isOpen ? "" : "\"", (isClosed ? "" : "\"") + after};
}

Part KeyPart(const Question& asked) {
    const std::size_t equals = asked.text.find('=');
    const bool isAlone = equals == asked.text.npos;
    const std::size_t begin = std::min(asked.text.find_first_not_of(" \t"), asked.at);
    const std::size_t end = std::max(asked.text.substr(0, equals).find_last_not_of(" \t") + 1, asked.at);
    if (asked.IsOfRegistry()) return QuotedPart(asked, begin, end, isAlone ? "=" : "");
    return {begin, end, {}, isAlone ? " = " : ""};
}

LspJson CompleteKey(const Question& asked) {
    Items items{asked.view, asked.line, KeyPart(asked)};
    const std::optional<CString> section = SectionAt(asked.view, asked.line);
    if (!section) return items.Release();
    const SectionUse use = asked.view.analysis.run.FindSection(*section);
    const std::set<CString> known = KeysIn(asked.view, *section, asked.line);
    for (const detail::OptionText& option : detail::GetOptionTexts()) {
        if (!use.isKnown || option.row->eSection != use.section || IsRule(*option.row)) continue;
        const bool isFamily = !option.row->IsSingle() && !use.index;
        if (isFamily && asked.IsOfRegistry()) continue;  // it gives single values only
        const CString key = option.row->szLongName;
        const CString name = isFamily ? FreeName(key + L"-%d", known) : key;
        items.Add(name, ItemKind::Property, known.contains(Folded(name)), detail::KindOf(*option.row),
                  option.description);
    }
    return items.Release();
}

// The start of the reference around a position; nothing outside a reference.
std::optional<std::size_t> OpenReference(const Question& asked, std::size_t value) {
    const std::string_view before = asked.Before().substr(value);
    if (std::ranges::count(before, '%') % 2 == 0) return {};
    return value + before.rfind('%') + 1;
}

LspJson CompleteReference(const Question& asked, std::size_t begin) {
    const std::size_t close = asked.text.find('%', begin);
    const bool isOpen = close == asked.text.npos;
    Items items{asked.view, asked.line, {begin, isOpen ? asked.at : close, {}, isOpen ? "%" : ""}};
    std::set<CString> offered;
    const auto add = [&](const CString& name, const std::string& what) {
        if (offered.insert(Folded(name)).second) items.Add(name, ItemKind::Variable, /*isThere*/ false, what);
    };
    const XOption& options = asked.view.analysis.startup.options;
    for (const CString& section :
         {SectionAt(asked.view, asked.line).value_or(CString{}), options.GetSectionName(eSectionRoot)}) {
        for (const StartupSource& source : asked.view.analysis.run.sources) {
            for (const SourceLine& line : source.view.lines) {
                const bool isKey = line.kind == Kind::Entry && line.answers && line.number != asked.line + 1;
                if (isKey && line.section.CompareNoCase(section) == 0) add(line.key, "[" + ToUtf8(section) + "]");
            }
        }
    }
    for (const detail::OptionText& option : detail::GetOptionTexts()) {
        const bool isText = option.row->IsString() && option.row->IsSingle();
        if (isText) add(option.row->szLongName, detail::KindOf(*option.row));
    }
    return items.Release();
}

LspJson CompleteValue(const Question& asked, std::size_t begin) {
    const std::size_t end = asked.text.size();
    const Part part = asked.IsOfRegistry() ? QuotedPart(asked, begin, end, {}) : Part{begin, end};
    Items items{asked.view, asked.line, part};
    const std::optional<CString> section = SectionAt(asked.view, asked.line);
    const SectionUse use = section ? asked.view.analysis.run.FindSection(*section) : SectionUse{};
    const std::string_view left = asked.text.substr(0, asked.text.find('='));
    CString key = FromUtf8(left);
    key.Trim(L" \t\"");
    const KeyUse option = use.isKnown ? asked.view.analysis.run.FindKey(use, key) : KeyUse{};
    if (!option.row) return items.Release();
    const CString value = FromUtf8(asked.text.substr(part.begin, part.end - part.begin)).Trim();
    const auto add = [&](const CString& word) { items.Add(word, ItemKind::Value, value.CompareNoCase(word) == 0); };
    if (option.row->IsBoolean()) std::ranges::for_each(g_BooleanStrings, add);
    if (option.row->IsTrillian()) std::ranges::for_each(g_TrillianStrings, add);
    return items.Release();
}

}  // namespace

LspJson Complete(LspWorld& /*world*/, const LspView& view, const LspJson& params) {
    const TextPosition position = PositionIn(params.at("position"));
    const DocumentText& text = view.document.text;
    const int line = std::min(position.line, text.LineCount() - 1);
    const Question asked{view, line, text.Line(line), text.OffsetInLine({line, position.column}, view.unit)};
    const std::string_view before = asked.Before();
    const std::size_t first = before.find_first_not_of(" \t");
    const std::size_t equals = before.find('=');
    if (first != before.npos && before[first] == ';') return {};
    if (first != before.npos && before[first] == '[') return CompleteSection(asked);
    if (equals == before.npos) return CompleteKey(asked);
    const std::optional<std::size_t> reference = asked.IsOfRegistry() ? std::nullopt : OpenReference(asked, equals);
    if (reference) return CompleteReference(asked, *reference);
    const std::size_t value = before.find_first_not_of(" \t", equals + 1);
    return CompleteValue(asked, value == before.npos ? asked.at : value);
}

}  // namespace veltrane::config
