#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <iterator>
#include <string_view>

#include "veltrane/options/detail/optionregistry.h"
#include "veltrane/options/optiontable.h"

namespace veltrane::detail {

// Finds rows by name and reads only one or two of them: the compiler computes the slots of all names.

/// Position of the row that a definition is, or that a host's copy stands for: in the library's table, then among the
/// registered ones; -1 for none.
inline int OptionRow(const XOptionDefinition& definition) {
    const std::less<> before;  // orders any two addresses
    const XOptionDefinition* const first = std::begin(g_OptionDefinitions);
    const XOptionDefinition* const end = std::end(g_OptionDefinitions);
    if (!before(&definition, first) && before(&definition, end)) return static_cast<int>(&definition - first);
    const auto* const same = std::ranges::find(g_OptionDefinitions, definition.eOption, &XOptionDefinition::eOption);
    if (same != end) return static_cast<int>(same - first);
    const OptionRegistry* const own = OptionRegistry::Registered();
    const int row = own ? own->RowOf(definition) : -1;
    return row < 0 ? -1 : OPTION_COUNT + row;
}

/// How many positions there are.
inline int OptionRowCount() {
    const OptionRegistry* const own = OptionRegistry::Registered();
    return OPTION_COUNT + (own ? own->OwnCount() : 0);
}

/// The row of an option that the library itself asks for, even one that a tool has left out.
consteval XOptionDefinition& LibraryRow(enumOption option) {
    const auto* const row = std::ranges::find(g_OptionDefinitions, option, &XOptionDefinition::eOption);
    if (row == std::end(g_OptionDefinitions) || option == eOptionTitle) throw "no option of the table has that id";
    return const_cast<XOptionDefinition&>(*row);  // as hosts know the rows; nobody changes them
}

/// Mixes the length and five elements of a name; the names of the table spread well over it.
constexpr std::uint32_t HashOptionName(std::wstring_view name) {
    const std::size_t size = name.size();
    std::uint32_t hash = static_cast<std::uint32_t>(size) * 0x9E3779B1U;
    if (size == 0) return hash;
    for (const std::size_t at : {std::size_t{0}, size - 1, size / 2, size / 4, size / 2 + size / 4}) {
        hash = (hash ^ static_cast<std::uint32_t>(name[at])) * 0x85EBCA6BU;
    }
    return hash ^ hash >> 15;
}

/// Open-addressed slots over one name column of the table; of equal names the first row answers.
/// @tparam Column  &XOptionDefinition::szShortName or szLongName
template <auto Column>
class OptionNameIndex {
public:
    consteval OptionNameIndex() {
        for (std::uint8_t row = 0; row < OPTION_COUNT; ++row) {
            const std::uint32_t slot = SlotOf(std::wstring_view{g_OptionDefinitions[row].*Column});
            if (m_Slots[slot] == 0) m_Slots[slot] = static_cast<std::uint8_t>(row + 1);
        }
    }

    /// @return null when no row has that name
    constexpr const XOptionDefinition* Find(std::wstring_view name) const {
        const std::uint8_t row = m_Slots[SlotOf(name)];
        return row == 0 ? nullptr : &g_OptionDefinitions[row - 1];
    }

private:
    static constexpr std::uint32_t SLOT_COUNT = 256;
    static_assert(OPTION_COUNT < SLOT_COUNT / 2);  // a search ends at a free slot

    /// The slot that holds the name, or the free one where it would go.
    constexpr std::uint32_t SlotOf(std::wstring_view name) const {
        std::uint32_t slot = HashOptionName(name) % SLOT_COUNT;
        while (m_Slots[slot] != 0 && !Holds(g_OptionDefinitions[m_Slots[slot] - 1].*Column, name)) {
            slot = (slot + 1) % SLOT_COUNT;
        }
        return slot;
    }

    /// Whether a field holds exactly that name, without measuring the field. A name that contains a NUL equals no
    /// field.
    template <std::size_t Width>
    static constexpr bool Holds(const wchar_t (&field)[Width], std::wstring_view name) {
        const std::size_t size = name.size();
        return size < Width && field[size] == 0 && (size == 0 || field[size - 1] != 0) &&
               std::wstring_view{field, size} == name;
    }

    std::array<std::uint8_t, SLOT_COUNT> m_Slots{};  // row number plus one; 0 is free
};

}  // namespace veltrane::detail
