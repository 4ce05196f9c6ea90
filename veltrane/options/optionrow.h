#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "veltrane/options/optionrules.h"
#include "veltrane/options/xoptiondefinition.h"

// How the rows of option tables are written, the library's and those of a tool.

namespace veltrane {

namespace detail {

template <std::size_t Width>
consteval void Put(wchar_t (&field)[Width], std::wstring_view text) {
    if (text.size() >= Width) RowIsRefused<Fault::TextDoesNotFitItsColumn>();
    std::ranges::copy(text, field);
}

}  // namespace detail

/// A row of the option table, its columns in reading order; a text that does not fit its column does not compile, nor
/// does a row that breaks a rule of its own.
/// @param tabulators   between name and value in a listing; -1 none
/// @param syntax       left column of the help: "-s, \t--scale <number>"
/// @param description  right column of the help, with the tabulators in front of it
consteval XOptionDefinition OptionRow(enumOption option, enumCfgSection section, std::wstring_view shortName,
                                      std::wstring_view longName, int tabulators, std::wstring_view syntax = {},
                                      std::wstring_view description = {}) {
    XOptionDefinition row{option, section, {}, {}, {}, tabulators, {}};
    detail::Put(row.szShortName, shortName);
    detail::Put(row.szLongName, longName);
    detail::Put(row.szSyntax, syntax);
    detail::Put(row.szDescription, description);
    detail::Refuse(detail::CheckRow(row));
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
    detail::Refuse(detail::CheckRow(row));
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

}  // namespace veltrane
