#include "veltrane/options/xoptiondefinition.h"

#include <algorithm>
#include <string_view>

#include "veltrane/options/detail/optionlookup.h"
#include "veltrane/options/detail/optiontable.h"

using namespace veltrane;
using namespace veltrane::detail;

const CString g_BooleanStrings[2] = {L"false", L"true"};
const CString g_TrillianStrings[3] = {L"false", L"true", L"auto"};

namespace {

constexpr OptionNameIndex<&XOptionDefinition::szShortName> SHORT_NAMES;
constexpr OptionNameIndex<&XOptionDefinition::szLongName> LONG_NAMES;

// Hosts know the rows as pointers to what could be changed; nobody changes them.
template <class Row>
Row* Handed(const Row* row) {
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
    if (name.starts_with(L"--")) return LONG_NAMES.Find(name.substr(2));
    if (name.starts_with(L'-')) return SHORT_NAMES.Find(name.substr(1));
    return LONG_NAMES.Find(name);
}

}  // namespace

const CString& XOptionDefinition::GetDefaultValue() const {
    static const CString none;
    return IsBoolean() ? g_BooleanStrings[1] : IsTrillian() ? g_TrillianStrings[eFlagAuto] : none;
}

int GetOptionDefinitionCount() {
    return OPTION_COUNT;
}

int GetConfigSectionCount() {
    return SECTION_COUNT;
}

XOptionDefinition* GetOptionDefinitionAt(int index) {
    return index >= 0 && index < OPTION_COUNT ? Handed(&g_OptionDefinitions[index]) : nullptr;
}

XOptionDefinition* FindOptionDefinition(const CString& name) {
    return Handed(FindByName(name.View()));
}

XConfigSection* FindConfigSection(enumCfgSection section) {
    const auto* const row = std::ranges::find(g_ConfigSections, section, &XConfigSection::eSection);
    return row == std::end(g_ConfigSections) ? nullptr : Handed(row);
}

XConfigSection* FindConfigSection(const CString& name) {
    const auto* const row =
        std::ranges::find_if(g_ConfigSections, [&](const XConfigSection& section) { return name == section.szName; });
    return row == std::end(g_ConfigSections) ? nullptr : Handed(row);
}

bool IsValidBooleanString(const CString& value) {
    return IsAnyOf(g_BooleanStrings, value);
}

bool IsValidTrillianString(const CString& value) {
    return IsAnyOf(g_TrillianStrings, value);
}
