#pragma once

#include <cstddef>
#include <string_view>
#include <type_traits>
#include <utility>

#include "veltrane/options/xowntable.h"

// Names of options that the compiler looks up in the library and a tool's table, and what it shows when it finds none.

namespace veltrane {

/// The table of a tool without options of its own.
inline constexpr OwnTable LIBRARY_ALONE{};

namespace detail {

// --- What compilers show ---

template <class Name>
struct NotAName {
    static_assert(sizeof(Name) == 0, "the name of an option is made of ASCII letters, digits, '-' and '_'");
};
template <class Name, class... Near>
struct NoOptionIsCalled {
    static_assert(sizeof(Name) == 0, "neither the library nor the given table has an option of that name");
};
template <class Name>
struct IsLeftOut {
    static_assert(sizeof(Name) == 0, "the given table leaves this option of the library out");
};
template <class Name>
struct HasSeveralValues {
    static_assert(sizeof(Name) == 0, "the option has several values: name an index, or use All");
};
template <class Name>
struct HasOneValue {
    static_assert(sizeof(Name) == 0, "the option has one value: use Get, without an index");
};
template <class Name>
struct HasNoText {
    static_assert(sizeof(Name) == 0, "the option is not a text: use Get");
};

// --- Rows by name ---

/// The row at a place: those of the library, then those of the table.
constexpr const XOptionDefinition& RowAt(const OwnTable& table, int place) {
    return place < OPTION_COUNT ? g_OptionDefinitions[place]
                                : table.options[static_cast<std::size_t>(place - OPTION_COUNT)];
}

constexpr int CountRows(const OwnTable& table) {
    return OPTION_COUNT + static_cast<int>(table.options.size());
}

/// Whether a tool with that table knows the option at a place.
constexpr bool HasOption(const OwnTable& table, int place) {
    return !IsTitle(RowAt(table, place)) && (place >= OPTION_COUNT || table.library.Has(place));
}

template <const OwnTable& Table>
constexpr std::wstring_view NameAt(int place) {
    return HasOption(Table, place) ? RowAt(Table, place).szLongName : std::wstring_view{};
}

template <const OwnTable& Table>
consteval int PlaceOf(std::wstring_view name) {
    return FindPlace(NameAt<Table>, CountRows(Table), name);
}

// --- An option that the compiler knows ---

/// How many values an option must have.
enum class Values { Any, One, Several };

struct NotRefused {};

template <OptionName Name, const OwnTable& Table>
consteval auto RefusalOfName() {
    constexpr int NEAREST = FindNearest(NameAt<Table>, CountRows(Table), Name.View());
    if constexpr (Name.View().empty() || !IsTypeable(Name.View())) {
        return std::type_identity<NotAName<Spell<Name>>>{};
    } else if constexpr (LibraryPlaceOf(Name.View()) >= 0) {
        return std::type_identity<IsLeftOut<Spell<Name>>>{};
    } else if constexpr (NEAREST < 0) {
        return std::type_identity<NoOptionIsCalled<Spell<Name>>>{};
    } else {
        return std::type_identity<NoOptionIsCalled<Spell<Name>, NearName<NameAt<Table>, NEAREST>>>{};
    }
}

/// The class that the compiler names when it refuses the option; NotRefused when nothing is wrong.
template <OptionName Name, const OwnTable& Table, Values Wanted>
consteval auto RefusalOf() {
    constexpr int PLACE = PlaceOf<Table>(Name.View());
    if constexpr (PLACE < 0) {
        return RefusalOfName<Name, Table>();
    } else if constexpr (Wanted == Values::One && !RowAt(Table, PLACE).IsSingle()) {
        return std::type_identity<HasSeveralValues<Spell<Name>>>{};
    } else if constexpr (Wanted == Values::Several && RowAt(Table, PLACE).IsSingle()) {
        return std::type_identity<HasOneValue<Spell<Name>>>{};
    } else {
        return std::type_identity<NotRefused>{};
    }
}

}  // namespace detail

}  // namespace veltrane
