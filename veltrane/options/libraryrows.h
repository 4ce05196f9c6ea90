#pragma once

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

#include "veltrane/options/optiontable.h"
#include "veltrane/options/spelledname.h"

namespace veltrane {

namespace detail {

// clang-format off
/// Rows that start-up asks for or acts on in every tool.
inline constexpr enumOption NEEDED_OPTIONS[] = {
    eOptionName, eOptionData, eOptionMetadata, eOptionConfig, eOptionIni,                     // where things are
    eOptionExePath, eOptionExeName, eOptionVersionInfo, eOptionCompileTime, eOptionDateTime,  // facts of the host
    eOptionHelp, eOptionVersion, eOptionSetup,                                                // end the process
};
/// Those that nearly every tool uses.
inline constexpr enumOption COMMON_OPTIONS[] = {
    eOptionLogFile, eOptionLogging, eOptionQuiet, eOptionSummary, eOptionWorkingDirectory,
};
// clang-format on

constexpr bool IsNeeded(int place) {
    return std::ranges::find(NEEDED_OPTIONS, g_OptionDefinitions[place].eOption) != std::end(NEEDED_OPTIONS);
}

constexpr std::wstring_view LibraryNameAt(int place) {
    const XOptionDefinition& row = g_OptionDefinitions[place];
    return IsTitle(row) ? std::wstring_view{} : row.szLongName;
}

/// Place of the library's option with that long name; -1 for none.
consteval int LibraryPlaceOf(std::wstring_view name) {
    return FindPlace(LibraryNameAt, OPTION_COUNT, name);
}

// What compilers show.
template <class Name, class... Near>
struct NotOfTheLibrary {
    static_assert(sizeof(Name) == 0, "the library has no option of that name");
};
template <class Name>
struct StartUpNeeds {
    static_assert(sizeof(Name) == 0, "start-up needs this option: it cannot be left out");
};

/// Place of a row that a table names, to have it or to leave it out.
template <OptionName Name, bool IsKept>
consteval int NamedPlace() {
    constexpr int PLACE = LibraryPlaceOf(Name.View());
    constexpr int NEAREST = FindNearest(LibraryNameAt, OPTION_COUNT, Name.View());
    // NOLINTBEGIN(bugprone-sizeof-expression)
    if constexpr (PLACE < 0 && NEAREST < 0) {
        static_assert(sizeof(NotOfTheLibrary<Spell<Name>>) > 0);
    } else if constexpr (PLACE < 0) {
        static_assert(sizeof(NotOfTheLibrary<Spell<Name>, NearName<LibraryNameAt, NEAREST>>) > 0);
    } else if constexpr (!IsKept && IsNeeded(PLACE)) {
        static_assert(sizeof(StartUpNeeds<Spell<Name>>) > 0);
    }
    // NOLINTEND(bugprone-sizeof-expression)
    return std::max(0, PLACE);
}

}  // namespace detail

/// The rows of the library's table that a tool has: all or some, known while compiling. A row that is left out does not
/// exist in the process: its name and place are unknown, it is never asked for nor mandatory, and its name is free for
/// a row of the tool's own. Start-up then creates no folder for it and reads no naming rules. Titles of the help go
/// with the last row below them; sections stay.
/// @code
/// inline constexpr veltrane::OwnTable TABLE{.options = OPTIONS, .library = BASE_ROWS.With<"spool", "exit">()};
/// @endcode
class LibraryRows {
public:
    /// All rows.
    constexpr LibraryRows() { std::ranges::fill(m_Has, true); }
    /// With the rows of these long names too; a name that the library does not have does not compile.
    template <OptionName... Names>
    consteval LibraryRows With() const {
        return Changed<true, Names...>();
    }
    /// Without the rows of these long names; naming one that start-up needs does not compile.
    template <OptionName... Names>
    consteval LibraryRows Without() const {
        return Changed<false, Names...>();
    }
    /// What start-up needs, the log, quiet, summary, and the facts of the host.
    static consteval LibraryRows Base() {
        LibraryRows rows;
        for (int place = 0; place < detail::OPTION_COUNT; ++place) {
            const enumOption option = detail::g_OptionDefinitions[place].eOption;
            rows.m_Has[place] = detail::IsNeeded(place) ||
                                std::ranges::find(detail::COMMON_OPTIONS, option) != std::end(detail::COMMON_OPTIONS);
        }
        rows.KeepTitles();
        return rows;
    }

    /// @param place  in the library's table, from 0
    constexpr bool Has(int place) const { return m_Has[place]; }
    constexpr bool HasAll() const {
        return std::ranges::all_of(m_Has, [](bool has) { return has; });
    }
    /// By place in the library's table. Valid as long as this object.
    constexpr std::span<const bool> View() const { return m_Has; }
    bool operator==(const LibraryRows&) const = default;

private:
    template <bool IsKept, OptionName... Names>
    consteval LibraryRows Changed() const {
        LibraryRows rows = *this;
        ((rows.m_Has[detail::NamedPlace<Names, IsKept>()] = IsKept), ...);
        rows.KeepTitles();
        return rows;
    }

    // A title begins its group, a separator line ends it.
    constexpr void KeepTitles() {
        int title = 0;
        bool isShown = false;
        for (int place = 0; place < detail::OPTION_COUNT; ++place) {
            const XOptionDefinition& row = detail::g_OptionDefinitions[place];
            if (!detail::IsTitle(row)) {
                isShown = isShown || (m_Has[place] && row.IsHelpVisible());
                continue;
            }
            if (std::wstring_view{row.szSyntax} == L"--") m_Has[title] = m_Has[place] = isShown;
            title = place;
            isShown = false;
        }
    }

    bool m_Has[detail::OPTION_COUNT];
};

/// The default of a table.
inline constexpr LibraryRows ALL_ROWS{};
/// For a tool that is not a schema tool.
inline constexpr LibraryRows BASE_ROWS = LibraryRows::Base();

}  // namespace veltrane
