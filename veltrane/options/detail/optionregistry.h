#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "veltrane/options/xowntable.h"

namespace veltrane::detail {

/// The options and sections that tools have registered in addition to those of the library.
class OptionRegistry {
public:
    /// Null while nothing is registered: look-ups then cost nothing.
    static const OptionRegistry* Registered() noexcept { return s_Registered; }
    /// All rows of the library, whether the process has them or not, then the registered ones.
    static std::vector<TableRows> Tables();
    /// Which rows of the library the process has.
    static LibraryRows Library() { return s_Registered ? s_Registered->m_Library : ALL_ROWS; }
    static bool HasLibraryRow(const XOptionDefinition& row) noexcept { return !s_Registered || s_Registered->Has(row); }

    /// Keeps copies of the rows.
    static void Add(const OwnOptions* owner, const OwnTable& table);
    /// While a store lives the rows stay; they go with the last one.
    static void Remove(const OwnOptions* owner) noexcept;

    /// Counts the living stores; nothing can be registered while there is one.
    static void StoreMade() noexcept { ++s_Stores; }
    static void StoreGone() noexcept {
        if (--s_Stores == 0 && s_Registered) DropOwnerless();
    }
    static bool HasStores() noexcept { return s_Stores > 0; }

    /// @param row  of the library
    bool Has(const XOptionDefinition& row) const noexcept {
        return m_Library.Has(static_cast<int>(&row - g_OptionDefinitions));
    }
    /// All that the process has, those of the library first.
    const std::vector<const XOptionDefinition*>& Options() const noexcept { return m_Options; }
    int OwnCount() const noexcept { return static_cast<int>(m_Options.size()) - m_nLibrary; }
    const std::vector<const XConfigSection*>& Sections() const noexcept { return m_Sections; }
    /// That of the last table that has one; null for none.
    const wchar_t* HelpHead() const noexcept;

    // By name among the registered options.
    const XOptionDefinition* FindLong(std::wstring_view name) const { return Find(m_LongNames, name); }
    /// For an empty name the first of all options that has no short one.
    const XOptionDefinition* FindShort(std::wstring_view name) const;
    /// Place of a definition, or of the one with its id, among the registered options; -1 for none.
    int RowOf(const XOptionDefinition& definition) const noexcept;

private:
    struct Table {
        const OwnOptions* owner;  // null after its end
        std::vector<XOptionDefinition> options;
        std::vector<XConfigSection> sections;
        std::optional<std::wstring> helpHead;
    };
    using Names = std::unordered_map<std::wstring_view, const XOptionDefinition*>;

    static const XOptionDefinition* Find(const Names& names, std::wstring_view name) {
        const auto found = names.find(name);
        return found == names.end() ? nullptr : found->second;
    }

    void Append(std::shared_ptr<Table> table);
    void ForgetNames(const Table& table) noexcept;
    void ListRows();
    static void DropOwnerless() noexcept;

    // Never destroyed: objects that end late may still ask.
    static constinit inline OptionRegistry* s_Registered = nullptr;
    static constinit inline std::atomic<int> s_Stores = 0;

    std::vector<std::shared_ptr<Table>> m_Tables;  // shared with the registry that takes this one's place
    LibraryRows m_Library;
    int m_nLibrary = 0;
    std::vector<const XOptionDefinition*> m_Options;
    std::vector<const XConfigSection*> m_Sections;
    Names m_LongNames;
    Names m_ShortNames;
};

}  // namespace veltrane::detail
