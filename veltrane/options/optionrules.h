#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>
#include <utility>

#include "veltrane/options/xoptiondefinition.h"
#include "veltrane/platform/text/characters.h"

// The rules for rows of an option table. The compiler checks constant tables and shows the rule that a row breaks by
// its name here; a registration checks while the program runs and has a text for each.

namespace veltrane::detail {

/// Options and their sections.
struct TableRows {
    std::span<const XOptionDefinition> options;
    std::span<const XConfigSection> sections;
    std::span<const bool> present = {};  ///< which of the options the process has; empty for all

    constexpr bool Has(const XOptionDefinition& row) const {
        return present.empty() || present[static_cast<std::size_t>(&row - options.data())];
    }
};

/// What is wrong with a row. Compilers show these names.
enum class Fault {
    None,
    // An option
    NameIsEmpty,
    NameBeginsWithAHyphen,
    NameHasOtherThanLettersDigitsAndHyphens,
    HasSeveralTypes,
    HasNoType,
    ValueMayBeLeftOutButIsNoText,
    TabulatorsAreNotFromMinus1To16,
    TextDoesNotFitItsColumn,
    IdHasNoNumber,
    IdIsInUse,
    NameIsInUse,
    ShortNameIsInUse,
    ItsValuesWouldHaveTheKeyOf,
    ItsKeyWouldBeAValueOf,
    SectionDoesNotExist,
    SectionHasAnIndexValueHasNone,
    // A section
    SectionNameIsEmpty,
    SectionNameDoesNotFitItsColumn,
    SectionValueStandsForNone,
    SectionHasPercentOutsideOneIndex,
    SectionIsBelowItself,
    SectionValueOrNameIsInUse,
    SectionSharesItsIndexWith,
    SectionIsNamedByAnUnknownOption,
    SectionIsNamedByAnOptionWithoutOneText,
    SectionAboveDoesNotExist,
    SectionIsBelowOneWithAnIndex,
};
inline constexpr int FAULT_COUNT = static_cast<int>(Fault::SectionIsBelowOneWithAnIndex) + 1;

/// Why a table is refused; converts to false when it is not.
struct [[nodiscard]] Refusal {
    Fault fault = Fault::None;
    std::wstring_view name = {};
    std::wstring_view other = {};  ///< the second row or the short name, for the rules that name one

    constexpr explicit operator bool() const { return fault != Fault::None; }
};

constexpr bool IsTitle(const XOptionDefinition& row) {
    return row.eOption == eOptionTitle;
}

/// Whether a text column has its NUL. For rows that OptionRow fills the last element is enough.
template <std::size_t Width>
constexpr bool HasEnd(const wchar_t (&column)[Width]) {
    return column[Width - 1] == 0 || std::ranges::any_of(column, [](wchar_t element) { return element == 0; });
}

/// All of a column that has no NUL.
template <std::size_t Width>
constexpr std::wstring_view Whole(const wchar_t (&column)[Width]) {
    return {column, Width};
}

// --- An option alone ---

constexpr bool IsDigit(wchar_t element) {
    return element >= L'0' && element <= L'9';
}

constexpr bool IsTypeable(std::wstring_view name) {
    const auto isPart = [](wchar_t element) {
        const wchar_t lower = LowerAscii(element);
        return (lower >= L'a' && lower <= L'z') || IsDigit(element) || element == L'-' || element == L'_';
    };
    return std::ranges::all_of(name, isPart);
}

constexpr Refusal CheckNames(const XOptionDefinition& row) {
    if (row.szLongName[0] == 0) return {Fault::NameIsEmpty, L""};
    if (row.szLongName[0] == L'-' || row.szShortName[0] == L'-') return {Fault::NameBeginsWithAHyphen, row.szLongName};
    if (!IsTypeable(row.szLongName) || !IsTypeable(row.szShortName)) {
        return {Fault::NameHasOtherThanLettersDigitsAndHyphens, row.szLongName};
    }
    return {};
}

// A command may have no type or also the type of its value.
constexpr Refusal CheckType(const XOptionDefinition& row) {
    const int types = row.IsString() + row.IsBoolean() + row.IsTrillian() + row.IsIList();
    if (types > 1) return {Fault::HasSeveralTypes, row.szLongName};
    if (types == 0 && !row.IsCommand()) return {Fault::HasNoType, row.szLongName};
    return {};
}

// No listing has a value 128 columns to the right.
inline constexpr int MAX_TABULATORS = 16;

constexpr Refusal CheckEnds(const XOptionDefinition& row) {
    if (!HasEnd(row.szLongName)) return {Fault::TextDoesNotFitItsColumn, Whole(row.szLongName)};
    if (!HasEnd(row.szShortName) || !HasEnd(row.szSyntax) || !HasEnd(row.szDescription)) {
        return {Fault::TextDoesNotFitItsColumn, row.szLongName};
    }
    return {};
}

constexpr Refusal CheckRow(const XOptionDefinition& row) {
    if (const Refusal refusal = CheckEnds(row)) return refusal;
    if (IsTitle(row)) return {};
    if (const Refusal refusal = CheckNames(row)) return refusal;
    if (const Refusal refusal = CheckType(row)) return refusal;
    if (row.IsValueOptional() && !row.IsString()) return {Fault::ValueMayBeLeftOutButIsNoText, row.szLongName};
    const bool canBeShown = row.nTabulators >= -1 && row.nTabulators <= MAX_TABULATORS;
    return canBeShown ? Refusal{} : Refusal{Fault::TabulatorsAreNotFromMinus1To16, row.szLongName};
}

// --- A section alone ---

// Not with find: with sanitizers g++ does not treat its result as constant.
constexpr std::wstring_view FromPercent(std::wstring_view name) {
    while (!name.empty() && name.front() != L'%') name.remove_prefix(1);
    return name;
}

constexpr bool HasIndex(std::wstring_view name) {
    return FromPercent(name).starts_with(L"%d");
}

constexpr Refusal CheckPercent(const XConfigSection& row) {
    const std::wstring_view rest = FromPercent(row.szName);
    if (!rest.empty() && (!HasIndex(rest) || !FromPercent(rest.substr(1)).empty())) {
        return {Fault::SectionHasPercentOutsideOneIndex, row.szName};
    }
    return {};
}

constexpr Refusal CheckRow(const XConfigSection& row) {
    if (!HasEnd(row.szName)) return {Fault::SectionNameDoesNotFitItsColumn, Whole(row.szName)};
    if (row.szName[0] == 0 && row.eSection != eSectionUnnamed) return {Fault::SectionNameIsEmpty, L""};
    if (row.eSection == eSectionNone) return {Fault::SectionValueStandsForNone, row.szName};
    if (row.eSection == row.eParent) return {Fault::SectionIsBelowItself, row.szName};
    return CheckPercent(row);
}

// --- Rows side by side ---

/// As configuration files compare: without regard to case.
constexpr bool Begins(std::wstring_view text, std::wstring_view beginning) {
    if (text.size() < beginning.size()) return false;
    for (std::size_t i = 0; i < beginning.size(); ++i) {
        if (LowerAscii(text[i]) != LowerAscii(beginning[i])) return false;
    }
    return true;
}

// Options differ by their number, whatever their bits.
constexpr bool IsSameId(enumOption a, enumOption b) {
    return ((a ^ b) & ~0xFFF) == 0;
}

// Most names differ in the first element; clang limits the steps that a constant may take.
constexpr bool IsSameName(const wchar_t* a, const wchar_t* b) {
    return a[0] == b[0] && std::wstring_view{a} == b;
}

constexpr Refusal CheckIds(const XOptionDefinition& row, const XOptionDefinition& other) {
    if (IsSameId(row.eOption, other.eOption)) return {Fault::IdIsInUse, row.szLongName};
    return {};
}

constexpr Refusal CheckDiffer(const XOptionDefinition& row, const XOptionDefinition& other) {
    if (IsSameName(row.szLongName, other.szLongName)) return {Fault::NameIsInUse, row.szLongName};
    if (row.szShortName[0] != 0 && IsSameName(row.szShortName, other.szShortName)) {
        return {Fault::ShortNameIsInUse, row.szLongName, row.szShortName};
    }
    return CheckIds(row, other);
}

/// Whether a key of a section also gives a value of an option with several values there: by its bare name, of which the
/// beginning is enough, or with an index.
constexpr bool IsKeyOf(std::wstring_view family, std::wstring_view key) {
    if (key.size() <= family.size()) return Begins(family, key);
    if (!Begins(key, family) || key[family.size()] != L'-') return false;
    std::wstring_view index = key.substr(family.size() + 1);
    if (index.empty()) return true;
    if (index.front() == L'-') index.remove_prefix(1);
    return !index.empty() && IsDigit(index.front());
}

constexpr bool HasValueAt(const XOptionDefinition& family, const XOptionDefinition& other) {
    return !family.IsSingle() && LowerAscii(family.szLongName[0]) == LowerAscii(other.szLongName[0]) &&
           IsKeyOf(family.szLongName, other.szLongName);
}

constexpr Refusal CheckFamilies(const XOptionDefinition& row, const XOptionDefinition& other) {
    if (HasValueAt(row, other)) return {Fault::ItsValuesWouldHaveTheKeyOf, row.szLongName, other.szLongName};
    if (HasValueAt(other, row)) return {Fault::ItsKeyWouldBeAValueOf, row.szLongName, other.szLongName};
    return {};
}

constexpr bool HaveSameParent(const XConfigSection& a, const XConfigSection& b) {
    const auto parent = [](const XConfigSection& row) {
        return row.eParent == eSectionNone ? eSectionUnnamed : row.eParent;  // neither puts a name in front
    };
    return parent(a) == parent(b);
}

constexpr Refusal CheckDiffer(const XConfigSection& row, const XConfigSection& other) {
    const std::wstring_view name = row.szName;
    const bool isSameName = name.size() == std::wstring_view{other.szName}.size() && Begins(name, other.szName);
    if (row.eSection == other.eSection || (isSameName && HaveSameParent(row, other))) {
        return {Fault::SectionValueOrNameIsInUse, row.szName};
    }
    return {};
}

/// Whether a section is read as one with an index: whatever follows the number is ignored.
constexpr bool IsSectionOf(std::wstring_view family, std::wstring_view name) {
    if (!HasIndex(family)) return false;
    const std::size_t front = family.size() - FromPercent(family).size();
    if (!Begins(name, family.substr(0, front)) || name.size() == front) return false;
    const wchar_t next = name[front];
    return IsDigit(next) || next == L'%' || next == L'-' || next == L'+' || next == L' ';
}

constexpr Refusal CheckFamilies(const XConfigSection& row, const XConfigSection& other) {
    if (!HaveSameParent(row, other)) return {};
    if (IsSectionOf(row.szName, other.szName) || IsSectionOf(other.szName, row.szName)) {
        return {Fault::SectionSharesItsIndexWith, row.szName, other.szName};
    }
    return {};
}

// --- Rows among tables; those of the last one are checked ---

using Tables = std::span<const TableRows>;

/// No row or one. With sanitizers g++ cannot tell while compiling whether a pointer is null.
template <class Row>
using Found = std::span<const Row>;

constexpr Found<XConfigSection> FindRow(Tables tables, enumCfgSection section) {
    for (const TableRows& table : tables) {
        for (const XConfigSection& row : table.sections) {
            if (row.eSection == section) return {&row, 1};
        }
    }
    return {};
}

constexpr Found<XOptionDefinition> FindRow(Tables tables, std::wstring_view longName) {
    for (const TableRows& table : tables) {
        for (const XOptionDefinition& row : table.options) {
            if (!IsTitle(row) && longName == row.szLongName && table.Has(row)) return {&row, 1};
        }
    }
    return {};
}

/// The option that names a section, as the database's name does; none for a fixed name.
constexpr Found<XOptionDefinition> NamingOption(Tables tables, const XConfigSection& row) {
    const std::wstring_view name = row.szName;
    return name.starts_with(L"--") ? FindRow(tables, name.substr(2)) : Found<XOptionDefinition>{};
}

constexpr Refusal CheckNaming(Tables tables, const XConfigSection& row) {
    if (!std::wstring_view{row.szName}.starts_with(L"--")) return {};
    const Found<XOptionDefinition> option = NamingOption(tables, row);
    if (option.empty()) return {Fault::SectionIsNamedByAnUnknownOption, row.szName};
    if (!option[0].IsString() || !option[0].IsSingle() || option[0].IsValueOptional()) {
        return {Fault::SectionIsNamedByAnOptionWithoutOneText, row.szName};
    }
    return {};
}

constexpr std::size_t CountSections(Tables tables) {
    std::size_t count = 0;
    for (const TableRows& table : tables) count += table.sections.size();
    return count;
}

/// A section whose name depends on itself can never be asked for.
constexpr Refusal CheckDepth(Tables tables, const XConfigSection& row, std::size_t left) {
    if (left == 0) return {Fault::SectionIsBelowItself, row.szName};
    if (row.eParent != eSectionNone) {
        const Found<XConfigSection> parent = FindRow(tables, row.eParent);
        if (parent.empty()) return {Fault::SectionAboveDoesNotExist, row.szName};
        if (const Refusal refusal = CheckDepth(tables, parent[0], left - 1)) return refusal;
    }
    if (const Refusal refusal = CheckNaming(tables, row)) return refusal;
    for (const XOptionDefinition& naming : NamingOption(tables, row)) {
        for (const XConfigSection& place : FindRow(tables, naming.eSection)) {
            if (const Refusal refusal = CheckDepth(tables, place, left - 1)) return refusal;
        }
    }
    return {};
}

/// @param section  its depth is checked
constexpr bool HasIndex(Tables tables, enumCfgSection section) {
    if (section == eSectionNone) return false;
    const Found<XConfigSection> row = FindRow(tables, section);
    return !row.empty() && (HasIndex(row[0].szName) || HasIndex(tables, row[0].eParent));
}

constexpr Refusal CheckPlace(Tables tables, const XConfigSection& row) {
    if (const Refusal refusal = CheckDepth(tables, row, CountSections(tables))) return refusal;
    if (HasIndex(tables, row.eParent)) return {Fault::SectionIsBelowOneWithAnIndex, row.szName};
    return {};
}

constexpr Refusal CheckPlace(Tables tables, const XOptionDefinition& row) {
    if (IsTitle(row) || row.eSection == eSectionNone) return {};
    if (FindRow(tables, row.eSection).empty()) return {Fault::SectionDoesNotExist, row.szLongName};
    if (row.IsSingle() && HasIndex(tables, row.eSection)) return {Fault::SectionHasAnIndexValueHasNone, row.szLongName};
    return {};
}

/// @param table  that of the other
constexpr Refusal CheckBeside(Tables tables, const XOptionDefinition& row, const TableRows& table,
                              const XOptionDefinition& other) {
    if (IsTitle(row) || IsTitle(other)) return {};
    if (!table.Has(other)) return CheckIds(row, other);  // the library still distinguishes its rows by them
    if (const Refusal refusal = CheckDiffer(row, other)) return refusal;
    if (row.eSection != other.eSection || row.eSection == eSectionNone) return {};
    if (!HasValueAt(row, other) && !HasValueAt(other, row)) return {};
    // If the section has an index, the key has none.
    return HasIndex(tables, row.eSection) ? Refusal{} : CheckFamilies(row, other);
}

constexpr Refusal CheckBeside(Tables, const XConfigSection& row, const TableRows&, const XConfigSection& other) {
    if (const Refusal refusal = CheckDiffer(row, other)) return refusal;
    return CheckFamilies(row, other);
}

/// Comes before rows are compared with each other: only then does each of their texts end.
constexpr Refusal CheckAlone(const TableRows& table) {
    for (const XConfigSection& row : table.sections) {
        if (const Refusal refusal = CheckRow(row)) return refusal;
    }
    for (const XOptionDefinition& row : table.options) {
        if (const Refusal refusal = CheckRow(row)) return refusal;
    }
    return {};
}

template <class Row>
constexpr Refusal CheckAmong(Tables tables, const Row& row, std::span<const Row> TableRows::*rows) {
    if (const Refusal refusal = CheckPlace(tables, row)) return refusal;
    for (const TableRows& table : tables) {
        for (const Row& other : table.*rows) {
            if (&other == &row) break;  // those after it are compared with it
            if (const Refusal refusal = CheckBeside(tables, row, table, other)) return refusal;
        }
    }
    return {};
}

/// @param tables  the texts of all rows end
constexpr Refusal CheckAmong(Tables tables) {
    for (const XConfigSection& row : tables.back().sections) {
        if (const Refusal refusal = CheckAmong(tables, row, &TableRows::sections)) return refusal;
    }
    for (const XOptionDefinition& row : tables.back().options) {
        if (const Refusal refusal = CheckAmong(tables, row, &TableRows::options)) return refusal;
    }
    return {};
}

/// The first fault in the last table, which is the library's.
constexpr Refusal CheckTables(Tables tables) {
    if (const Refusal refusal = CheckAlone(tables.back())) return refusal;
    return CheckAmong(tables);
}

/// As CheckAlone, for a tool's rows, which the store looks up by their numbers at start-up.
constexpr Refusal CheckOwnAlone(const TableRows& table) {
    if (const Refusal refusal = CheckAlone(table)) return refusal;
    for (const XOptionDefinition& row : table.options) {
        if (!IsTitle(row) && !row.HasOptionNumber()) return {Fault::IdHasNoNumber, row.szLongName};
    }
    return {};
}

/// The first fault in the last table, which is a tool's.
constexpr Refusal CheckOwnTables(Tables tables) {
    if (const Refusal refusal = CheckOwnAlone(tables.back())) return refusal;
    return CheckAmong(tables);
}

// --- What compilers show ---

// Without constexpr and never defined: the compiler stops here and shows the fault.
template <Fault Found>
void RowIsRefused();

/// Where no name can be shown: the compiler shows the fault and the line.
consteval void Refuse(const Refusal& refusal) {
    if (!refusal) return;
    [&]<int... Faults>(std::integer_sequence<int, Faults...>) {
        ((refusal.fault == Fault{Faults} ? RowIsRefused<Fault{Faults}>() : void()), ...);
    }
    (std::make_integer_sequence<int, FAULT_COUNT>{});
}

}  // namespace veltrane::detail
