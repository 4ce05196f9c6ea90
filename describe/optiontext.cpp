#include "optiontext.h"

#include <algorithm>
#include <set>

#include "veltrane/platform/text/encoding.h"

namespace veltrane::detail {

namespace {

std::string OneLine(const CString& text) {
    std::string line;
    for (const char c : ToUtf8(text)) {
        const bool isBlank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
        if (!isBlank) line += c;
        if (isBlank && !line.empty() && line.back() != ' ') line += ' ';
    }
    if (line.ends_with(' ')) line.pop_back();
    return line;
}

/// The text that the left column of the help has in angle brackets.
std::string Placeholder(const XOptionDefinition& row) {
    const std::string syntax = OneLine(row.szSyntax);
    const std::size_t first = syntax.find('<');
    return first == std::string::npos ? std::string{} : syntax.substr(first);
}

ValueKind KindOfValue(const XOptionDefinition& row) {
    const bool isEnding = row.eSection == eSectionNone && row.IsBoolean();  // help and version ignore a value
    if (row.eOption == eOptionName) return ValueKind::Database;
    if (row.IsBoolean()) return isEnding ? ValueKind::None : ValueKind::Flag;
    if (row.IsTrillian()) return ValueKind::TriState;
    if (!row.IsString() && !row.IsIList()) return ValueKind::None;

    const std::string placeholder = Placeholder(row);
    if (placeholder.ends_with("directory>") || placeholder.ends_with("location>")) return ValueKind::Folder;
    const bool isFile = placeholder.ends_with("filename>") || placeholder.ends_with("dictionary>");
    return isFile ? ValueKind::File : ValueKind::Text;
}

std::string ValueText(const XOptionDefinition& row, ValueKind kind) {
    if (kind == ValueKind::None) return {};
    if (kind == ValueKind::Flag) return "[true|false]";
    if (kind == ValueKind::TriState) return "[true|false|auto]";
    const std::string placeholder = Placeholder(row);
    if (placeholder.empty()) return row.IsIList() ? "<numbers>" : "<text>";
    return row.IsValueOptional() ? '[' + placeholder + ']' : placeholder;
}

OptionText TextOf(const XOptionDefinition& row, const CString& tool) {
    const ValueKind kind = KindOfValue(row);
    const std::string key = ToUtf8(row.szLongName);
    const std::string shortName = ToUtf8(row.szShortName);
    return {.row = &row,
            .key = key,
            .shortOption = shortName.empty() ? shortName : '-' + shortName,
            .longOption = "--" + key,
            .value = ValueText(row, kind),
            .description = OneLine(DescribeOption(row, tool)),
            .kind = kind};
}

std::string TitleOf(const XOptionDefinition& row) {
    const std::string title = OneLine(row.szSyntax);
    return title == "--" ? std::string{} : title.substr(0, title.find(':'));
}

}  // namespace

std::vector<OptionGroup> GetOptionGroups(const std::string& tool) {
    std::vector<OptionGroup> groups(1);
    for (int i = 0; i < GetOptionDefinitionCount(); ++i) {
        const XOptionDefinition& row = *GetOptionDefinitionAt(i);
        if (row.eOption == eOptionTitle) {
            groups.push_back({TitleOf(row), {}});
        } else {
            groups.back().options.push_back(TextOf(row, FromUtf8(tool)));
        }
    }
    std::erase_if(groups, [](const OptionGroup& group) { return group.options.empty(); });
    return groups;
}

std::vector<OptionText> GetOptionTexts(const std::string& tool) {
    std::vector<OptionText> options;
    for (const OptionGroup& group : GetOptionGroups(tool)) {
        options.insert(options.end(), group.options.begin(), group.options.end());
    }
    return options;
}

bool HasOption(enumOption option) {
    const std::vector<OptionText> texts = GetOptionTexts();
    return std::ranges::any_of(texts, [&](const OptionText& text) { return text.row->eOption == option; });
}

std::string KindOf(const XOptionDefinition& row) {
    std::string kind;
    const auto add = [&](bool applies, std::string_view word) {
        if (applies) kind.append(kind.empty() ? "" : ", ").append(word);
    };
    add(row.IsCommand(), "command");
    add(row.IsBoolean(), "boolean");
    add(row.IsTrillian(), "tri-state");
    add(row.IsIList(), "integer list");
    add(row.IsString(), "text");
    add(row.IsMandatory(), "mandatory");
    add(row.IsValueOptional(), "value may be left out");
    add(!row.IsSingle(), "several values");
    return kind;
}

std::string SectionTitle(enumCfgSection section) {
    const XConfigSection* const row = FindConfigSection(section);
    if (!row) return {};
    const std::string parent = SectionTitle(row->eParent);
    std::string own = Replaced(ToUtf8(row->szName), "%d", "<n>");
    if (own.starts_with("--")) own = "<database>";
    return parent.empty() ? own : parent + '\\' + own;
}

std::vector<enumCfgSection> GetOptionSections() {
    std::set<enumCfgSection> sections;
    for (const OptionText& option : GetOptionTexts()) sections.insert(option.row->eSection);
    sections.erase(eSectionNone);
    return {sections.begin(), sections.end()};
}

}  // namespace veltrane::detail
