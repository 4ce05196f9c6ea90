#include "veltrane/options/xowntable.h"

#include <algorithm>

#include "veltrane/foundation/xraise.h"
#include "veltrane/options/detail/optionregistry.h"

namespace veltrane {

using namespace detail;

namespace {

constexpr XSource Here{L".\\xowntable"};

bool IsTypeable(std::wstring_view name) {
    const auto isLetter = [](wchar_t element) {
        return (element >= L'a' && element <= L'z') || (element >= L'A' && element <= L'Z') ||
               (element >= L'0' && element <= L'9') || element == L'-' || element == L'_';
    };
    return !name.starts_with(L'-') && std::ranges::all_of(name, isLetter);
}

// By id among all rows, titles apart.
bool IsIdInUse(enumOption option) {
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (row->eOption == option) return true;
    }
    return false;
}

void CheckName(std::wstring_view name) {
    if (name.empty() || !IsTypeable(name)) {
        throw MakeError(Here(L"OwnOptions::OwnOptions"),
                        L"The option <%s> cannot be registered: a name is made of letters, digits and hyphens!", name);
    }
}

void CheckOption(const XOptionDefinition& row) {
    if (IsTitle(row)) return;
    CheckName(row.szLongName);
    if (row.szShortName[0] != 0) CheckName(row.szShortName);
    if (FindOptionDefinition(row.szLongName)) {
        throw MakeError(Here(L"OwnOptions::OwnOptions"), L"The option <%s> cannot be registered: its name is in use!",
                        row.szLongName);
    }
    if (row.szShortName[0] != 0 && FindOptionDefinition(CString{L"-"} + row.szShortName)) {
        throw MakeError(Here(L"OwnOptions::OwnOptions"),
                        L"The option <%s> cannot be registered: its short name <%s> is in use!", row.szLongName,
                        row.szShortName);
    }
    if (IsIdInUse(row.eOption)) {
        throw MakeError(Here(L"OwnOptions::OwnOptions"), L"The option <%s> cannot be registered: its id is in use!",
                        row.szLongName);
    }
    if (!row.HasOptionNumber()) {
        throw MakeError(Here(L"OwnOptions::OwnOptions"), L"The option <%s> cannot be registered: its id has no number!",
                        row.szLongName);
    }
}

void CheckSection(const XConfigSection& row) {
    const XConfigSection* const same = FindConfigSection(row.szName);
    if (row.eSection == eSectionNone || FindConfigSection(row.eSection) || (same && same->eParent == row.eParent)) {
        throw MakeError(Here(L"OwnOptions::OwnOptions"),
                        L"The section <%s> cannot be registered: its value or its name is in use!", row.szName);
    }
}

const XConfigSection* FindAmong(enumCfgSection section, const OwnTable& table) {
    const auto own = std::ranges::find(table.sections, section, &XConfigSection::eSection);
    return own == table.sections.end() ? FindConfigSection(section) : &*own;
}

// The section of the option that names a section, as the database's name does; eSectionNone for a fixed name.
enumCfgSection NamedIn(const XConfigSection& row, const OwnTable& table) {
    const std::wstring_view name = row.szName;
    if (!name.starts_with(L"--")) return eSectionNone;
    const auto own = std::ranges::find(table.options, name.substr(2), [](const XOptionDefinition& option) {
        return std::wstring_view{option.szLongName};
    });
    if (own != table.options.end()) return own->eSection;
    const XOptionDefinition* const option = FindOptionDefinition(CString{name.substr(2)});
    return option ? option->eSection : eSectionNone;
}

// A section whose name depends on itself could never be asked for.
void CheckDepth(enumCfgSection section, const OwnTable& table, std::size_t depth) {
    if (section == eSectionNone) return;
    const XConfigSection* const row = FindAmong(section, table);
    if (!row) {
        throw MakeError(Here(L"OwnOptions::OwnOptions"), L"The section <%d> does not exist!", section);
    }
    if (depth > table.sections.size() + static_cast<std::size_t>(GetConfigSectionCount())) {
        throw MakeError(Here(L"OwnOptions::OwnOptions"), L"The section <%s> stands below itself!", row->szName);
    }
    CheckDepth(row->eParent, table, depth + 1);
    CheckDepth(NamedIn(*row, table), table, depth + 1);
}

void Check(const OwnTable& table) {
    if (OptionRegistry::HasStores()) {
        throw MakeError(Here(L"OwnOptions::OwnOptions"), L"Options can be registered only before a store is made!");
    }
    for (const XOptionDefinition& row : table.options) CheckOption(row);
    for (const XConfigSection& row : table.sections) CheckSection(row);
    for (const XConfigSection& row : table.sections) CheckDepth(row.eSection, table, 0);
    for (const XOptionDefinition& row : table.options) CheckDepth(row.eSection, table, 0);
    if (!OptionsDiffer(table.options) || !SectionsDiffer(table.sections)) {
        throw MakeError(Here(L"OwnOptions::OwnOptions"),
                        L"Two rows that are to be registered have the same id or name!");
    }
}

}  // namespace

OwnOptions::OwnOptions(const OwnTable& table) {
    Check(table);
    OptionRegistry::Add(this, table);
}

OwnOptions::~OwnOptions() {
    OptionRegistry::Remove(this);
}

}  // namespace veltrane
