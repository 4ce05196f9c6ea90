#include "veltrane/options/detail/optionregistry.h"

#include <algorithm>
#include <cstddef>
#include <functional>

namespace veltrane::detail {

std::vector<TableRows> OptionRegistry::Tables() {
    std::vector<TableRows> tables = {LIBRARY_ROWS};
    if (!s_Registered) return tables;
    for (const auto& table : s_Registered->m_Tables) tables.push_back({table->options, table->sections});
    return tables;
}

void OptionRegistry::Add(const OwnOptions* owner, const OwnTable& table) {
    auto grown = s_Registered ? std::make_unique<OptionRegistry>(*s_Registered) : std::make_unique<OptionRegistry>();
    auto kept = std::make_shared<Table>();
    kept->owner = owner;
    kept->options.assign(table.options.begin(), table.options.end());
    kept->sections.assign(table.sections.begin(), table.sections.end());
    if (table.helpHead) kept->helpHead = table.helpHead;
    if (!table.library.HasAll()) grown->m_Library = table.library;
    grown->Append(std::move(kept));
    delete s_Registered;
    s_Registered = grown.release();
}

void OptionRegistry::Remove(const OwnOptions* owner) noexcept {
    const auto& tables = s_Registered->m_Tables;
    (*std::ranges::find(tables, owner, [](const auto& table) { return table->owner; }))->owner = nullptr;
    if (!HasStores()) DropOwnerless();
}

void OptionRegistry::DropOwnerless() noexcept {
    OptionRegistry& registry = *s_Registered;
    for (const auto& table : registry.m_Tables) {
        if (!table->owner) registry.ForgetNames(*table);
    }
    std::erase_if(registry.m_Tables, [](const auto& table) { return !table->owner; });
    registry.ListRows();
    if (!registry.m_Tables.empty()) return;
    delete s_Registered;
    s_Registered = nullptr;
}

void OptionRegistry::Append(std::shared_ptr<Table> table) {
    for (const XOptionDefinition& row : table->options) {
        if (IsTitle(row)) continue;
        m_LongNames.emplace(row.szLongName, &row);
        if (row.szShortName[0] != 0) m_ShortNames.emplace(row.szShortName, &row);
    }
    m_Tables.push_back(std::move(table));
    ListRows();
}

void OptionRegistry::ForgetNames(const Table& table) noexcept {
    for (const XOptionDefinition& row : table.options) {
        m_LongNames.erase(row.szLongName);
        m_ShortNames.erase(row.szShortName);
    }
}

// Allocates nothing when there are fewer rows than before.
void OptionRegistry::ListRows() {
    m_Options.clear();
    m_Sections.clear();
    for (const XOptionDefinition& row : g_OptionDefinitions) {
        if (Has(row)) m_Options.push_back(&row);
    }
    m_nLibrary = static_cast<int>(m_Options.size());
    for (const auto& table : m_Tables) {
        for (const XOptionDefinition& row : table->options) m_Options.push_back(&row);
        for (const XConfigSection& row : table->sections) m_Sections.push_back(&row);
    }
}

const XOptionDefinition* OptionRegistry::FindShort(std::wstring_view name) const {
    if (!name.empty()) return Find(m_ShortNames, name);
    const auto first =
        std::ranges::find_if(m_Options, [](const XOptionDefinition* row) { return row->szShortName[0] == 0; });
    return *first;  // one of the host's facts, if no other
}

const wchar_t* OptionRegistry::HelpHead() const noexcept {
    const auto last =
        std::find_if(m_Tables.rbegin(), m_Tables.rend(), [](const auto& table) { return table->helpHead.has_value(); });
    return last == m_Tables.rend() ? nullptr : (*last)->helpHead->c_str();
}

int OptionRegistry::RowOf(const XOptionDefinition& definition) const noexcept {
    const std::less<> before;  // orders any two addresses
    std::ptrdiff_t first = 0;
    for (const auto& table : m_Tables) {
        const XOptionDefinition* const begin = table->options.data();
        const XOptionDefinition* const end = begin + table->options.size();
        if (!before(&definition, begin) && before(&definition, end)) {
            return static_cast<int>(first + (&definition - begin));
        }
        first += end - begin;
    }
    const auto own = m_Options.begin() + m_nLibrary;
    const auto same = std::find_if(own, m_Options.end(),
                                   [&](const XOptionDefinition* row) { return row->eOption == definition.eOption; });
    return same == m_Options.end() ? -1 : static_cast<int>(same - own);
}

}  // namespace veltrane::detail
