#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>

#include "veltrane/options/xoptiondefinition.h"

// How rows of the option table are written, the library's and those of a tool, and what the compiler checks in them.

namespace veltrane {

namespace detail {

template <std::size_t Width>
consteval void Put(wchar_t (&field)[Width], std::wstring_view text) {
    if (text.size() >= Width) throw "the text does not fit its field";
    std::ranges::copy(text, field);
}

}  // namespace detail

/// A row of the option table, its columns in reading order; a text that does not fit its column does not compile.
/// @param tabulators   between name and value in a listing; -1 none
/// @param syntax       left column of the help: "-s, \t--scale <number>"
/// @param description  right column of the help, with the tabulators that bring it there
consteval XOptionDefinition OptionRow(enumOption option, enumCfgSection section, std::wstring_view shortName,
                                      std::wstring_view longName, int tabulators, std::wstring_view syntax = {},
                                      std::wstring_view description = {}) {
    XOptionDefinition row{option, section, {}, {}, {}, tabulators, {}};
    detail::Put(row.szShortName, shortName);
    detail::Put(row.szLongName, longName);
    detail::Put(row.szSyntax, syntax);
    detail::Put(row.szDescription, description);
    return row;
}

/// A title in the help, or a separator line for "--".
consteval XOptionDefinition TitleRow(std::wstring_view title) {
    return OptionRow(eOptionTitle, eSectionNone, L"--", L"--", -1, title);
}

/// A row of the section table.
consteval XConfigSection SectionRow(enumCfgSection section, enumCfgSection parent, std::wstring_view name) {
    XConfigSection row{section, parent, {}};
    detail::Put(row.szName, name);
    return row;
}

/// Id of an option of a tool's own: its number, from 1 to 65,535, and its type bits; differs from every id of the
/// library.
/// @code
/// constexpr enumOption eOptionScale = veltrane::OwnOption(1, eString | eSingle | eHelp);
/// @endcode
consteval enumOption OwnOption(int number, int bits) {
    if (number < 1 || number > 0xFFFF) throw "the number of an option is between 1 and 65,535";
    if ((bits & ~0xFFF) != 0) throw "the type bits of an option are the low twelve";
    return static_cast<enumOption>(0x40000000 | number << 12 | bits);
}

/// Value of a section of a tool's own, its number from 1 to 65,535; differs from every section of the library.
consteval enumCfgSection OwnSection(int number) {
    if (number < 1 || number > 0xFFFF) throw "the number of a section is between 1 and 65,535";
    return static_cast<enumCfgSection>(0x1000 + number);
}

namespace detail {

constexpr bool IsTitle(const XOptionDefinition& row) {
    return row.eOption == eOptionTitle;
}

/// Whether two rows can stand in one table: ids and names differ.
constexpr bool Differ(const XOptionDefinition& a, const XOptionDefinition& b) {
    if (IsTitle(a) || IsTitle(b)) return true;
    return a.eOption != b.eOption && std::wstring_view{a.szLongName} != b.szLongName &&
           (a.szShortName[0] == 0 || std::wstring_view{a.szShortName} != b.szShortName);
}

constexpr bool Differ(const XConfigSection& a, const XConfigSection& b) {
    return a.eSection != b.eSection &&
           (a.eParent != b.eParent || std::wstring_view{a.szName} != std::wstring_view{b.szName});
}

template <class Row>
constexpr bool AllDiffer(std::span<const Row> rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (std::size_t j = i + 1; j < rows.size(); ++j) {
            if (!Differ(rows[i], rows[j])) return false;
        }
    }
    return true;
}

constexpr bool OptionsDiffer(std::span<const XOptionDefinition> rows) {
    return AllDiffer(rows);
}
constexpr bool SectionsDiffer(std::span<const XConfigSection> rows) {
    return AllDiffer(rows);
}

constexpr bool IsAmong(enumCfgSection section, std::span<const XConfigSection> sections) {
    return section == eSectionNone || std::ranges::count(sections, section, &XConfigSection::eSection) == 1;
}

constexpr bool SectionsExist(std::span<const XOptionDefinition> rows, std::span<const XConfigSection> sections) {
    return std::ranges::all_of(rows, [&](const auto& row) { return IsAmong(row.eSection, sections); }) &&
           std::ranges::all_of(sections, [&](const auto& row) { return IsAmong(row.eParent, sections); });
}

}  // namespace detail

}  // namespace veltrane
