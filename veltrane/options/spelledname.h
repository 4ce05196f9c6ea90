#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "veltrane/foundation/nearest.h"

// Names of options that the compiler looks up, and how it shows them when it refuses one.

namespace veltrane {

/// The long name of an option as a template argument: Get<"logfile">.
template <std::size_t Size>
struct OptionName {
    consteval OptionName(const char (&name)[Size]) : text{} { std::ranges::copy(name, text); }  // NOLINT(*-explicit-*)
    constexpr std::wstring_view View() const { return {text, Size - 1}; }

    wchar_t text[Size];  // as in the table
};

namespace detail {

// A name letter by letter, because not every compiler shows the text of a template argument.
template <char...>
struct Spelled {};

template <OptionName Name, std::size_t... At>
Spelled<static_cast<char>(Name.text[At])...> SpellLetters(std::index_sequence<At...>);
template <OptionName Name>
using Spell = decltype(SpellLetters<Name>(std::make_index_sequence<Name.View().size()>{}));

/// The long names of a table by place, from 0; empty where there is no option.
using NameAtPlace = std::wstring_view (*)(int place);

/// Place of an option; -1 for none.
consteval int FindPlace(NameAtPlace nameAt, int count, std::wstring_view name) {
    for (int place = 0; place < count && !name.empty(); ++place) {
        if (name == nameAt(place)) return place;
    }
    return -1;
}

/// Place of the option whose name is nearest; -1 for none.
consteval int FindNearest(NameAtPlace nameAt, int count, std::wstring_view name) {
    NearestText search{name};
    int nearest = -1;
    for (int place = 0; place < count; ++place) {
        if (search.IsNearer(nameAt(place))) nearest = place;
    }
    return nearest;
}

template <char...>
struct DidYouMean {};

template <NameAtPlace NameAt, int Place, std::size_t... At>
DidYouMean<static_cast<char>(NameAt(Place)[At])...> SpellNear(std::index_sequence<At...>);
template <NameAtPlace NameAt, int Place>
using NearName = decltype(SpellNear<NameAt, Place>(std::make_index_sequence<NameAt(Place).size()>{}));

}  // namespace detail

}  // namespace veltrane
