#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>

#include "veltrane/options/xoptiondefinition.h"
#include "veltrane/platform/text/format.h"

// The rules for rows of an option table. The compiler checks constant tables and shows the line that throws; a
// registration checks while the program runs.

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

/// A row that a table must not have, by its name.
struct RowRefused {
    XFormat<const wchar_t*> message;
    const wchar_t* name;
};

/// A row that must not be in a table with another.
struct RowsRefused {
    XFormat<const wchar_t*, const wchar_t*> message;
    const wchar_t* name;
    const wchar_t* other;
};

constexpr bool IsTitle(const XOptionDefinition& row) {
    return row.eOption == eOptionTitle;
}

/// Whether a text column has its NUL. For rows that OptionRow fills the last element is enough.
template <std::size_t Width>
constexpr bool HasEnd(const wchar_t (&column)[Width]) {
    return column[Width - 1] == 0 || std::ranges::any_of(column, [](wchar_t element) { return element == 0; });
}

// --- An option alone ---

constexpr bool IsDigit(wchar_t element) {
    return element >= L'0' && element <= L'9';
}

constexpr bool IsTypeable(std::wstring_view name) {
    const auto isPart = [](wchar_t element) {
        return (element >= L'a' && element <= L'z') || (element >= L'A' && element <= L'Z') || IsDigit(element) ||
               element == L'-' || element == L'_';
    };
    return !name.starts_with(L'-') && std::ranges::all_of(name, isPart);
}

constexpr void CheckNames(const XOptionDefinition& row) {
    if (row.szLongName[0] == 0) throw RowRefused{L"The option <%s> cannot be registered: its name is empty!", L""};
    if (!IsTypeable(row.szLongName) || !IsTypeable(row.szShortName)) {
        throw RowRefused{L"The option <%s> cannot be registered: a name is made of letters, digits and hyphens!",
                         row.szLongName};
    }
}

// A command may have no type or also the type of its value.
constexpr void CheckType(const XOptionDefinition& row) {
    const int types = row.IsString() + row.IsBoolean() + row.IsTrillian() + row.IsIList();
    if (types > 1) throw RowRefused{L"The option <%s> cannot be registered: it has several types!", row.szLongName};
    if (types == 0 && !row.IsCommand()) {
        throw RowRefused{L"The option <%s> cannot be registered: it has no type!", row.szLongName};
    }
}

constexpr void CheckOptionalValue(const XOptionDefinition& row) {
    if (row.IsValueOptional() && !row.IsString()) {
        throw RowRefused{L"The option <%s> cannot be registered: only the value of a text may be left out!",
                         row.szLongName};
    }
}

// No listing has a value 128 columns to the right.
inline constexpr int MAX_TABULATORS = 16;

constexpr void CheckTabulators(const XOptionDefinition& row) {
    if (row.nTabulators < -1 || row.nTabulators > MAX_TABULATORS) {
        throw RowRefused{L"The option <%s> cannot be registered: its tabulators are from -1 to 16!", row.szLongName};
    }
}

constexpr void CheckEnds(const XOptionDefinition& row) {
    if (!HasEnd(row.szShortName) || !HasEnd(row.szLongName) || !HasEnd(row.szSyntax) || !HasEnd(row.szDescription)) {
        throw RowRefused{L"The option <%s> cannot be registered: a text fills its column without an end!", L""};
    }
}

constexpr void CheckRow(const XOptionDefinition& row) {
    CheckEnds(row);
    if (IsTitle(row)) return;
    CheckNames(row);
    CheckType(row);
    CheckOptionalValue(row);
    CheckTabulators(row);
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

constexpr void CheckPercent(const XConfigSection& row) {
    const std::wstring_view rest = FromPercent(row.szName);
    if (!rest.empty() && (!HasIndex(rest) || !FromPercent(rest.substr(1)).empty())) {
        throw RowRefused{L"The section <%s> cannot be registered: a '%%' stands in one \"%%d\" only!", row.szName};
    }
}

constexpr void CheckRow(const XConfigSection& row) {
    if (!HasEnd(row.szName)) {
        throw RowRefused{L"The section <%s> cannot be registered: its name fills its column without an end!", L""};
    }
    if (row.szName[0] == 0 && row.eSection != eSectionUnnamed) {
        throw RowRefused{L"The section <%s> cannot be registered: its name is empty!", L""};
    }
    if (row.eSection == eSectionNone) {
        throw RowRefused{L"The section <%s> cannot be registered: its value stands for none!", row.szName};
    }
    if (row.eSection == row.eParent) throw RowRefused{L"The section <%s> stands below itself!", row.szName};
    CheckPercent(row);
}

// --- Rows side by side ---

constexpr wchar_t Lower(wchar_t element) {
    return element >= L'A' && element <= L'Z' ? static_cast<wchar_t>(element - L'A' + L'a') : element;
}

/// As configuration files compare: without regard to case.
constexpr bool Begins(std::wstring_view text, std::wstring_view beginning) {
    if (text.size() < beginning.size()) return false;
    for (std::size_t i = 0; i < beginning.size(); ++i) {
        if (Lower(text[i]) != Lower(beginning[i])) return false;
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

constexpr void CheckIds(const XOptionDefinition& row, const XOptionDefinition& other) {
    if (IsSameId(row.eOption, other.eOption)) {
        throw RowRefused{L"The option <%s> cannot be registered: its id is in use!", row.szLongName};
    }
}

constexpr void CheckDiffer(const XOptionDefinition& row, const XOptionDefinition& other) {
    if (IsSameName(row.szLongName, other.szLongName)) {
        throw RowRefused{L"The option <%s> cannot be registered: its name is in use!", row.szLongName};
    }
    if (row.szShortName[0] != 0 && IsSameName(row.szShortName, other.szShortName)) {
        throw RowsRefused{L"The option <%s> cannot be registered: its short name <%s> is in use!", row.szLongName,
                          row.szShortName};
    }
    CheckIds(row, other);
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
    return !family.IsSingle() && Lower(family.szLongName[0]) == Lower(other.szLongName[0]) &&
           IsKeyOf(family.szLongName, other.szLongName);
}

constexpr void CheckFamilies(const XOptionDefinition& row, const XOptionDefinition& other) {
    if (HasValueAt(row, other)) {
        throw RowsRefused{L"The option <%s> cannot be registered: the key of <%s> would be one of its values!",
                          row.szLongName, other.szLongName};
    }
    if (HasValueAt(other, row)) {
        throw RowsRefused{L"The option <%s> cannot be registered: its key would be a value of <%s>!", row.szLongName,
                          other.szLongName};
    }
}

constexpr bool HaveSameParent(const XConfigSection& a, const XConfigSection& b) {
    const auto parent = [](const XConfigSection& row) {
        return row.eParent == eSectionNone ? eSectionUnnamed : row.eParent;  // neither puts a name in front
    };
    return parent(a) == parent(b);
}

constexpr void CheckDiffer(const XConfigSection& row, const XConfigSection& other) {
    const std::wstring_view name = row.szName;
    const bool isSameName = name.size() == std::wstring_view{other.szName}.size() && Begins(name, other.szName);
    if (row.eSection == other.eSection || (isSameName && HaveSameParent(row, other))) {
        throw RowRefused{L"The section <%s> cannot be registered: its value or its name is in use!", row.szName};
    }
}

/// Whether a section is read as one with an index: whatever follows the number is ignored.
constexpr bool IsSectionOf(std::wstring_view family, std::wstring_view name) {
    if (!HasIndex(family)) return false;
    const std::size_t front = family.size() - FromPercent(family).size();
    if (!Begins(name, family.substr(0, front)) || name.size() == front) return false;
    const wchar_t next = name[front];
    return IsDigit(next) || next == L'%' || next == L'-' || next == L'+' || next == L' ';
}

constexpr void CheckFamilies(const XConfigSection& row, const XConfigSection& other) {
    if (!HaveSameParent(row, other)) return;
    if (IsSectionOf(row.szName, other.szName) || IsSectionOf(other.szName, row.szName)) {
        throw RowsRefused{L"The section <%s> cannot be registered: its index and that of <%s> are one!", row.szName,
                          other.szName};
    }
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
    if (!name.starts_with(L"--")) return {};
    const Found<XOptionDefinition> option = FindRow(tables, name.substr(2));
    if (option.empty()) {
        throw RowRefused{L"The section <%s> cannot be registered: the option that names it is not known!", row.szName};
    }
    if (!option[0].IsString() || !option[0].IsSingle() || option[0].IsValueOptional()) {
        throw RowRefused{L"The section <%s> cannot be registered: only an option with one text can name it!",
                         row.szName};
    }
    return option;
}

constexpr std::size_t CountSections(Tables tables) {
    std::size_t count = 0;
    for (const TableRows& table : tables) count += table.sections.size();
    return count;
}

/// A section whose name depends on itself can never be asked for.
constexpr void CheckDepth(Tables tables, const XConfigSection& row, std::size_t left) {
    if (left == 0) throw RowRefused{L"The section <%s> stands below itself!", row.szName};
    if (row.eParent != eSectionNone) {
        const Found<XConfigSection> parent = FindRow(tables, row.eParent);
        if (parent.empty()) {
            throw RowRefused{L"The section <%s> cannot be registered: the one above does not exist!", row.szName};
        }
        CheckDepth(tables, parent[0], left - 1);
    }
    for (const XOptionDefinition& naming : NamingOption(tables, row)) {
        for (const XConfigSection& place : FindRow(tables, naming.eSection)) CheckDepth(tables, place, left - 1);
    }
}

/// @param section  its depth is checked
constexpr bool HasIndex(Tables tables, enumCfgSection section) {
    if (section == eSectionNone) return false;
    const Found<XConfigSection> row = FindRow(tables, section);
    return !row.empty() && (HasIndex(row[0].szName) || HasIndex(tables, row[0].eParent));
}

constexpr void CheckPlace(Tables tables, const XConfigSection& row) {
    CheckDepth(tables, row, CountSections(tables));
    if (HasIndex(tables, row.eParent)) {
        throw RowRefused{L"The section <%s> cannot be registered: it stands below one with an index!", row.szName};
    }
}

constexpr void CheckPlace(Tables tables, const XOptionDefinition& row) {
    if (IsTitle(row) || row.eSection == eSectionNone) return;
    if (FindRow(tables, row.eSection).empty()) {
        throw RowRefused{L"The option <%s> cannot be registered: its section does not exist!", row.szLongName};
    }
    if (row.IsSingle() && HasIndex(tables, row.eSection)) {
        throw RowRefused{L"The option <%s> cannot be registered: its section has an index, its value has none!",
                         row.szLongName};
    }
}

/// @param table  that of the other
constexpr void CheckBeside(Tables tables, const XOptionDefinition& row, const TableRows& table,
                           const XOptionDefinition& other) {
    if (IsTitle(row) || IsTitle(other)) return;
    if (!table.Has(other)) return CheckIds(row, other);  // the library still distinguishes its rows by them
    CheckDiffer(row, other);
    if (row.eSection != other.eSection || row.eSection == eSectionNone) return;
    if (!HasValueAt(row, other) && !HasValueAt(other, row)) return;
    // If the section has an index, the key has none.
    if (!HasIndex(tables, row.eSection)) CheckFamilies(row, other);
}

constexpr void CheckBeside(Tables, const XConfigSection& row, const TableRows&, const XConfigSection& other) {
    CheckDiffer(row, other);
    CheckFamilies(row, other);
}

/// Comes before rows are compared with each other: only then does each of their texts end.
constexpr void CheckAlone(const TableRows& table) {
    for (const XConfigSection& row : table.sections) CheckRow(row);
    for (const XOptionDefinition& row : table.options) CheckRow(row);
}

/// @throws RowRefused, RowsRefused  a row of the last table breaks a rule
template <class Row>
constexpr void CheckAmong(Tables tables, const Row& row, std::span<const Row> TableRows::*rows) {
    CheckPlace(tables, row);
    for (const TableRows& table : tables) {
        for (const Row& other : table.*rows) {
            if (&other == &row) break;  // those after it are compared with it
            CheckBeside(tables, row, table, other);
        }
    }
}

constexpr void CheckAmong(Tables tables) {
    for (const XConfigSection& row : tables.back().sections) CheckAmong(tables, row, &TableRows::sections);
    for (const XOptionDefinition& row : tables.back().options) CheckAmong(tables, row, &TableRows::options);
}

/// @throws RowRefused, RowsRefused  a row of the last table breaks a rule
constexpr void CheckTables(Tables tables) {
    CheckAlone(tables.back());
    CheckAmong(tables);
}

/// For an option that a store looks up by number at start-up.
constexpr void CheckNumber(const XOptionDefinition& row) {
    if (IsTitle(row) || row.HasOptionNumber()) return;
    throw RowRefused{L"The option <%s> cannot be registered: its id has no number!", row.szLongName};
}

/// As CheckTables, for a tool's rows.
constexpr void CheckOwnTables(Tables tables) {
    CheckAlone(tables.back());
    for (const XOptionDefinition& row : tables.back().options) CheckNumber(row);
    CheckAmong(tables);
}

}  // namespace veltrane::detail
