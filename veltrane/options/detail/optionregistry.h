#pragma once

#include <atomic>
#include <cstdint>
#include <string_view>
#include <vector>

#include "veltrane/options/xowntable.h"

namespace veltrane::detail {

/// The options and sections that tools have registered beside those of the library.
class OptionRegistry {
public:
    /// Null as long as nothing is registered: look-ups then cost nothing.
    static const OptionRegistry* Registered() noexcept { return s_Registered; }

    static void Add(const OwnTable& table);
    static void Remove(const OwnTable& table) noexcept;

    /// Counts the stores that live; nothing is registered beside them.
    static void StoreMade() noexcept { ++s_Stores; }
    static void StoreGone() noexcept { --s_Stores; }
    static bool HasStores() noexcept { return s_Stores > 0; }

    const std::vector<const XOptionDefinition*>& Options() const noexcept { return m_Options; }
    const std::vector<const XConfigSection*>& Sections() const noexcept { return m_Sections; }
    const wchar_t* HelpHead() const noexcept { return m_HelpHead; }

    const XOptionDefinition* FindLong(std::wstring_view name) const { return Find(m_LongNames, LongName, name); }
    const XOptionDefinition* FindShort(std::wstring_view name) const { return Find(m_ShortNames, ShortName, name); }
    /// Place of a definition, or of the one with its id, among the options; -1 for none.
    int RowOf(const XOptionDefinition& definition) const noexcept;

private:
    using NameOf = std::wstring_view (*)(const XOptionDefinition&);
    using Slots = std::vector<std::uint32_t>;  // place of an option plus one; 0 is free

    static std::wstring_view LongName(const XOptionDefinition& row) { return row.szLongName; }
    static std::wstring_view ShortName(const XOptionDefinition& row) { return row.szShortName; }

    void Append(const OwnTable& table);
    Slots IndexOf(NameOf nameOf) const;
    std::size_t SlotOf(const Slots& slots, NameOf nameOf, std::wstring_view name) const;
    const XOptionDefinition* Find(const Slots& slots, NameOf nameOf, std::wstring_view name) const;

    // Without an end of their own: objects that end late may still ask.
    static constinit inline OptionRegistry* s_Registered = nullptr;
    static constinit inline std::atomic<int> s_Stores = 0;

    std::vector<OwnTable> m_Tables;
    std::vector<const XOptionDefinition*> m_Options;
    std::vector<const XConfigSection*> m_Sections;
    const wchar_t* m_HelpHead = nullptr;
    Slots m_LongNames;
    Slots m_ShortNames;
};

}  // namespace veltrane::detail
