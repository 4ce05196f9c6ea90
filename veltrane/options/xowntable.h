#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>

#include "veltrane/options/libraryrows.h"

namespace veltrane {

/// The options of a tool's own, in the form of the library's table, and which of the library's it has in addition.
struct OwnTable {
    std::span<const XOptionDefinition> options = {};
    std::span<const XConfigSection> sections = {};  ///< further ones, fixed names or below others
    /// First lines of the help, line ends included, in place of the library's; null keeps those.
    const wchar_t* helpHead = nullptr;
    /// The same for the whole process: a module keeps the default and leaves the choice to its tool.
    LibraryRows library = ALL_ROWS;
};

namespace detail {

/// The rows of the library that a tool has, and its own.
struct ToolTables {
    constexpr explicit ToolTables(const OwnTable& table)
        : rows{{g_OptionDefinitions, g_ConfigSections, table.library.View()}, {table.options, table.sections}} {}
    TableRows rows[2];
};

template <std::size_t Width>
constexpr std::size_t LengthOf(const wchar_t (&column)[Width]) {
    return static_cast<std::size_t>(std::ranges::find(column, L'\0') - column);
}
template <const OwnTable& Table, std::size_t Row, std::size_t... At>
Spelled<static_cast<char>(Table.options[Row].szLongName[At])...> SpellOption(std::index_sequence<At...>);
template <const OwnTable& Table, std::size_t Row, std::size_t... At>
Spelled<static_cast<char>(Table.sections[Row].szName[At])...> SpellSection(std::index_sequence<At...>);

// A class for each row, which compilers name when they refuse the row.
template <class Name, const OwnTable& Table, std::size_t Row>
struct OptionCalled {
    static_assert((CheckRow(Table.options[Row]), CheckNumber(Table.options[Row]),
                   CheckAmong(ToolTables{Table}.rows, Table.options[Row], &TableRows::options), true));
};
template <class Name, const OwnTable& Table, std::size_t Row>
struct SectionCalled {
    static_assert((CheckRow(Table.sections[Row]),
                   CheckAmong(ToolTables{Table}.rows, Table.sections[Row], &TableRows::sections), true));
};

template <const OwnTable& Table, std::size_t Row>
constexpr void CheckOption() {
    using Letters = std::make_index_sequence<LengthOf(Table.options[Row].szLongName)>;
    // NOLINTNEXTLINE(bugprone-sizeof-expression)
    static_assert(sizeof(OptionCalled<decltype(SpellOption<Table, Row>(Letters{})), Table, Row>) > 0);
}
template <const OwnTable& Table, std::size_t Row>
constexpr void CheckSection() {
    using Letters = std::make_index_sequence<LengthOf(Table.sections[Row].szName)>;
    // NOLINTNEXTLINE(bugprone-sizeof-expression)
    static_assert(sizeof(SectionCalled<decltype(SpellSection<Table, Row>(Letters{})), Table, Row>) > 0);
}

}  // namespace detail

/// For a static_assert beside a tool's rows: true, or it does not compile when a row breaks a rule by itself, with
/// another one, or with one of the library's that the tool has. The compiler shows the name of the row and the rule.
/// @code
/// static_assert(veltrane::FitsLibrary<OWN_TABLE>());
/// @endcode
template <const OwnTable& Table>
consteval bool FitsLibrary() {
    [[maybe_unused]] constexpr auto checkOptions = []<std::size_t... Row>(std::index_sequence<Row...>) {
        (detail::CheckOption<Table, Row>(), ...);
    };
    [[maybe_unused]] constexpr auto checkSections = []<std::size_t... Row>(std::index_sequence<Row...>) {
        (detail::CheckSection<Table, Row>(), ...);
    };
    checkSections(std::make_index_sequence<Table.sections.size()>{});
    checkOptions(std::make_index_sequence<Table.options.size()>{});
    return true;
}
/// The same for a table without a name; the compiler shows the rule alone.
consteval bool FitsLibrary(const OwnTable& table) {
    detail::CheckOwnTables(detail::ToolTables{table}.rows);
    return true;
}

/// Makes the options of a tool's own known to the process while it lives: they are found, typed, read, walked and shown
/// like the library's, after those and in the order of registration. Create it before the first store and keep it until
/// after the last one. Several may live at once, such as those of a tool and of its modules; the choice that one makes
/// among the library's rows then counts for all, until the last of them has ended.
/// @code
/// int main() {
///     const veltrane::OwnOptions options{{OPTIONS, SECTIONS, L"Synopsis: scale [options] <database-name>\r\n"}};
///     XOption store;
/// @endcode
class VELTRANE_API OwnOptions {
public:
    /// Copies rows, sections and texts: they need not live any longer.
    /// @throws XException  a store lives; another registration has made another choice among the library's rows; or a
    ///                     row breaks a rule alone, beside those of its table, of the library or of other
    ///                     registrations, whose rows must not need one that is left out now
    [[nodiscard]] explicit OwnOptions(const OwnTable& table);
    OwnOptions(const OwnOptions&) = delete;
    OwnOptions& operator=(const OwnOptions&) = delete;
    /// The options are unknown afterwards; while a store lives, which is a fault of the program, they stay known, and
    /// go with the last store. Pointers to their rows are valid until then.
    ~OwnOptions();
};

}  // namespace veltrane
