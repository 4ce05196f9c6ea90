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

// Asks for no memory when there are fewer rows than before.
void OptionRegistry::ListRows() {
    m_Options.clear();
    m_Sections.clear();
    for (const auto& table : m_Tables) {
        for (const XOptionDefinition& row : table->options) m_Options.push_back(&row);
        for (const XConfigSection& row : table->sections) m_Sections.push_back(&row);
    }
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
    const auto same = std::ranges::find(m_Options, definition.eOption, &XOptionDefinition::eOption);
    return same == m_Options.end() ? -1 : static_cast<int>(same - m_Options.begin());
}

}  // namespace veltrane::detail
