#include "veltrane/options/xoptiondefinition.h"

#include <algorithm>
#include <string_view>

#include "veltrane/options/detail/optionlookup.h"
#include "veltrane/options/detail/optionregistry.h"

using namespace veltrane::detail;

namespace {

constexpr OptionNameIndex<&XOptionDefinition::szShortName> SHORT_NAMES;
constexpr OptionNameIndex<&XOptionDefinition::szLongName> LONG_NAMES;

// Hosts know the rows through pointers that allow changes; nobody makes any.
template <class Row>
Row* AsHostsKnowIt(const Row* row) {
    return const_cast<Row*>(row);
}

template <std::size_t Count>
bool IsAnyOf(const CString (&words)[Count], const CString& value) {
    return std::ranges::any_of(words, [&](const CString& word) { return word.CompareNoCase(value) == 0; });
}

const XOptionDefinition* FindByName(std::wstring_view name) {
    // The titles carry "--" as both names, so they answer to "--", "---" and "----".
    if (name.starts_with(L"--") && name.find_first_not_of(L'-') == std::wstring_view::npos) {
        return name.size() <= 4 ? &g_OptionDefinitions[0] : nullptr;
    }
    const bool isShort = name.starts_with(L'-') && !name.starts_with(L"--");
    if (name.starts_with(L'-')) name.remove_prefix(isShort ? 1 : 2);
    const XOptionDefinition* const row = isShort ? SHORT_NAMES.Find(name) : LONG_NAMES.Find(name);
    const OptionRegistry* const own = OptionRegistry::Registered();
    if (!own || (row && own->Has(*row))) return row;
    return isShort ? own->FindShort(name) : own->FindLong(name);
}

// Those of the library, then the registered ones.
template <class Fits>
const XConfigSection* FindSection(Fits fits) {
    const auto* const row = std::ranges::find_if(g_ConfigSections, fits);
    if (row != std::end(g_ConfigSections)) return row;
    if (const OptionRegistry* const own = OptionRegistry::Registered()) {
        const auto& sections = own->Sections();
        const auto found =
            std::ranges::find_if(sections, [&](const XConfigSection* section) { return fits(*section); });
        if (found != sections.end()) return *found;
    }
    return nullptr;
}

}  // namespace

const CString& XOptionDefinition::GetDefaultValue() const {
    static const CString& none = *new CString;  // never destroyed: objects that end late may still ask
    return IsBoolean() ? g_BooleanStrings[1] : IsTrillian() ? g_TrillianStrings[eFlagAuto] : none;
}

int GetOptionDefinitionCount() {
    const OptionRegistry* const own = OptionRegistry::Registered();
    return own ? static_cast<int>(own->Options().size()) : OPTION_COUNT;
}

int GetConfigSectionCount() {
    const OptionRegistry* const own = OptionRegistry::Registered();
    return SECTION_COUNT + (own ? static_cast<int>(own->Sections().size()) : 0);
}

XOptionDefinition* GetOptionDefinitionAt(int index) {
    const auto place = static_cast<std::size_t>(index);  // beyond all for one below 0
    if (const OptionRegistry* const own = OptionRegistry::Registered()) {
        return place < own->Options().size() ? AsHostsKnowIt(own->Options()[place]) : nullptr;
    }
    return place < std::size(g_OptionDefinitions) ? AsHostsKnowIt(&g_OptionDefinitions[place]) : nullptr;
}

XConfigSection* GetConfigSectionAt(int index) {
    if (index < 0 || index >= GetConfigSectionCount()) return nullptr;
    if (index < SECTION_COUNT) return AsHostsKnowIt(&g_ConfigSections[index]);
    return AsHostsKnowIt(OptionRegistry::Registered()->Sections()[static_cast<std::size_t>(index - SECTION_COUNT)]);
}

XOptionDefinition* FindOptionDefinition(const CString& name) {
    return AsHostsKnowIt(FindByName(name.View()));
}

XConfigSection* FindConfigSection(enumCfgSection section) {
    return AsHostsKnowIt(FindSection([section](const XConfigSection& row) { return row.eSection == section; }));
}

XConfigSection* FindConfigSection(const CString& name) {
    return AsHostsKnowIt(FindSection([&](const XConfigSection& row) { return name == row.szName; }));
}

bool IsValidBooleanString(const CString& value) {
    return IsAnyOf(g_BooleanStrings, value);
}

bool IsValidTrillianString(const CString& value) {
    return IsAnyOf(g_TrillianStrings, value);
}
