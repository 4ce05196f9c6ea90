#include "veltrane/options/detail/optionregistry.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <functional>
#include <memory>

namespace veltrane::detail {

namespace {

// All elements count: a tool's names often differ in a number inside.
std::size_t HashOf(std::wstring_view name) noexcept {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const wchar_t element : name) hash = (hash ^ static_cast<std::uint32_t>(element)) * 0x100000001B3U;
    return static_cast<std::size_t>(hash ^ hash >> 29);
}

bool IsSame(const OwnTable& a, const OwnTable& b) noexcept {
    return a.options.data() == b.options.data() && a.sections.data() == b.sections.data();
}

}  // namespace

void OptionRegistry::Add(const OwnTable& table) {
    auto grown = s_Registered ? std::make_unique<OptionRegistry>(*s_Registered) : std::make_unique<OptionRegistry>();
    grown->Append(table);
    delete s_Registered;
    s_Registered = grown.release();
}

// Made anew from the tables that stay. Without the memory for it, or beside a store, the rows stay known.
void OptionRegistry::Remove(const OwnTable& table) noexcept {
    if (!s_Registered || s_Stores > 0) return;
    try {
        auto left = std::make_unique<OptionRegistry>();
        for (const OwnTable& known : s_Registered->m_Tables) {
            if (!IsSame(known, table)) left->Append(known);
        }
        if (left->m_Tables.empty()) left.reset();
        delete s_Registered;
        s_Registered = left.release();
    } catch (...) {  // NOLINT(bugprone-empty-catch): a destructor calls
    }
}

void OptionRegistry::Append(const OwnTable& table) {
    m_Tables.push_back(table);
    for (const XOptionDefinition& row : table.options) m_Options.push_back(&row);
    for (const XConfigSection& row : table.sections) m_Sections.push_back(&row);
    if (table.helpHead) m_HelpHead = table.helpHead;
    m_LongNames = IndexOf(LongName);
    m_ShortNames = IndexOf(ShortName);
}

int OptionRegistry::RowOf(const XOptionDefinition& definition) const noexcept {
    const std::less<> before;  // orders any two addresses
    std::ptrdiff_t first = 0;
    for (const OwnTable& table : m_Tables) {
        const XOptionDefinition* const begin = table.options.data();
        const XOptionDefinition* const end = begin + table.options.size();
        if (!before(&definition, begin) && before(&definition, end)) {
            return static_cast<int>(first + (&definition - begin));
        }
        first += end - begin;
    }
    const auto same = std::ranges::find(m_Options, definition.eOption, &XOptionDefinition::eOption);
    return same == m_Options.end() ? -1 : static_cast<int>(same - m_Options.begin());
}

OptionRegistry::Slots OptionRegistry::IndexOf(NameOf nameOf) const {
    Slots slots(std::bit_ceil(2 * m_Options.size() + 1));
    for (std::size_t i = 0; i < m_Options.size(); ++i) {
        const std::wstring_view name = nameOf(*m_Options[i]);
        if (IsTitle(*m_Options[i]) || name.empty()) continue;
        std::uint32_t& slot = slots[SlotOf(slots, nameOf, name)];
        if (slot == 0) slot = static_cast<std::uint32_t>(i + 1);
    }
    return slots;
}

// The slot that holds the name, or the free one where it would stand; half of the slots are free.
std::size_t OptionRegistry::SlotOf(const Slots& slots, NameOf nameOf, std::wstring_view name) const {
    std::size_t slot = HashOf(name) & (slots.size() - 1);
    while (slots[slot] != 0 && nameOf(*m_Options[slots[slot] - 1]) != name) slot = (slot + 1) & (slots.size() - 1);
    return slot;
}

const XOptionDefinition* OptionRegistry::Find(const Slots& slots, NameOf nameOf, std::wstring_view name) const {
    const std::uint32_t place = slots[SlotOf(slots, nameOf, name)];
    return place == 0 ? nullptr : m_Options[place - 1];
}

}  // namespace veltrane::detail
