#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <type_traits>
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

// What compilers show when they refuse a table.
template <Fault, class... Names>
struct RowRefused;

using FindRefusal = Refusal (*)();

template <FindRefusal Find, auto Name, std::size_t... At>
Spelled<static_cast<char>((Find().*Name)[At])...> SpellNameIn(std::index_sequence<At...>);
template <FindRefusal Find, auto Name>
using NameIn = decltype(SpellNameIn<Find, Name>(std::make_index_sequence<(Find().*Name).size()>{}));

/// The class that the compiler names when it refuses a row; a complete one when nothing is wrong.
template <FindRefusal Find>
consteval auto ShownFor() {
    constexpr Refusal REFUSAL = Find();
    if constexpr (!REFUSAL.other.empty()) {
        return std::type_identity<
            RowRefused<REFUSAL.fault, NameIn<Find, &Refusal::name>, NameIn<Find, &Refusal::other>>>{};
    } else if constexpr (bool{REFUSAL}) {
        return std::type_identity<RowRefused<REFUSAL.fault, NameIn<Find, &Refusal::name>>>{};
    } else {
        return std::type_identity<Refusal>{};
    }
}

/// Does not compile when there is a refusal. A class is refused once; a function also where it is called.
template <FindRefusal Find, class Shown = typename decltype(ShownFor<Find>())::type>
struct Fits : std::true_type {
    static_assert(sizeof(Shown) > 0);  // NOLINT(bugprone-sizeof-expression)
};

// A function for each row: clang limits the steps that one constant may take.
template <const OwnTable& Table>
constexpr Refusal RefusalAlone() {
    return CheckOwnAlone({Table.options, Table.sections});
}
template <const OwnTable& Table, std::size_t Row>
constexpr Refusal RefusalOfOption() {
    return CheckAmong(ToolTables{Table}.rows, Table.options[Row], &TableRows::options);
}
template <const OwnTable& Table, std::size_t Row>
constexpr Refusal RefusalOfSection() {
    return CheckAmong(ToolTables{Table}.rows, Table.sections[Row], &TableRows::sections);
}

template <const OwnTable& Table, std::size_t... Section, std::size_t... Option>
consteval bool FitAmong(std::index_sequence<Section...>, std::index_sequence<Option...>) {
    return std::min({true,  // clang limits the length of a fold
                     Fits<&RefusalOfSection<Table, Section>>::value...,
                     Fits<&RefusalOfOption<Table, Option>>::value...});
}

/// Not when a row of it was refused where it stands.
template <const OwnTable& Table>
concept IsConstant = requires {
    typename std::bool_constant<bool{RefusalAlone<Table>()}>;
};

}  // namespace detail

/// For a static_assert beside a tool's rows: true, or it does not compile when a row breaks a rule by itself, with
/// another one, or with one of the library's that the tool has. The compiler shows the rule and the name of the row:
/// RowRefused<Fault::NameIsInUse, Spelled<'q', 'u', 'i', 'e', 't'>>.
/// @code
/// static_assert(veltrane::FitsLibrary<OWN_TABLE>());
/// @endcode
template <const OwnTable& Table>
consteval bool FitsLibrary() {
    if constexpr (!detail::IsConstant<Table>) {
        return false;
    } else if constexpr (bool{detail::RefusalAlone<Table>()}) {
        return detail::Fits<&detail::RefusalAlone<Table>>::value;
    } else {
        return detail::FitAmong<Table>(std::make_index_sequence<Table.sections.size()>{},
                                       std::make_index_sequence<Table.options.size()>{});
    }
}
/// The same for a table without a name; the compiler shows the rule alone.
// By value: with checked containers g++ does not know while compiling that a temporary has an address.
consteval bool FitsLibrary(OwnTable table) {
    detail::Refuse(detail::CheckOwnTables(detail::ToolTables{table}.rows));
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
