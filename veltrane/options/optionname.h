#pragma once

#include <cstddef>
#include <string_view>
#include <type_traits>
#include <utility>

#include "veltrane/foundation/nearest.h"
#include "veltrane/options/xowntable.h"

// Names of options that the compiler looks up in the library and a tool's table, and what it shows when it finds none.

namespace veltrane {

/// The table of a tool without options of its own.
inline constexpr OwnTable LIBRARY_ALONE{};

namespace detail {

// --- What compilers show ---

template <char...>
struct DidYouMean {};

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

/// Place of the option with that long name; -1 for none.
consteval int FindPlace(const OwnTable& table, std::wstring_view name) {
    for (int place = 0; place < CountRows(table); ++place) {
        if (HasOption(table, place) && name == RowAt(table, place).szLongName) return place;
    }
    return -1;
}

/// Place of the option whose name is nearest; -1 for none.
consteval int FindNearest(const OwnTable& table, std::wstring_view name) {
    NearestText search{name};
    int nearest = -1;
    for (int place = 0; place < CountRows(table); ++place) {
        if (HasOption(table, place) && search.IsNearer(RowAt(table, place).szLongName)) nearest = place;
    }
    return nearest;
}

// --- An option that the compiler knows ---

template <const OwnTable& Table, int Place, std::size_t... At>
DidYouMean<static_cast<char>(RowAt(Table, Place).szLongName[At])...> SpellNear(std::index_sequence<At...>);
template <const OwnTable& Table, int Place>
using NearName = decltype(SpellNear<Table, Place>(
    std::make_index_sequence<std::wstring_view{RowAt(Table, Place).szLongName}.size()>{}));

/// How many values an option must have.
enum class Values { Any, One, Several };

struct NotRefused {};

template <OptionName Name, const OwnTable& Table, int Nearest = FindNearest(Table, Name.View())>
consteval auto RefusalOfName() {
    if constexpr (Name.View().empty() || !IsTypeable(Name.View())) {
        return std::type_identity<NotAName<Spell<Name>>>{};
    } else if constexpr (FindLibraryPlace(Name.View()) >= 0) {
        return std::type_identity<IsLeftOut<Spell<Name>>>{};
    } else if constexpr (Nearest < 0) {
        return std::type_identity<NoOptionIsCalled<Spell<Name>>>{};
    } else {
        return std::type_identity<NoOptionIsCalled<Spell<Name>, NearName<Table, Nearest>>>{};
    }
}

/// The class that the compiler names when it refuses the option; NotRefused when nothing is wrong.
template <OptionName Name, const OwnTable& Table, Values Wanted>
consteval auto RefusalOf() {
    constexpr int PLACE = FindPlace(Table, Name.View());
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
