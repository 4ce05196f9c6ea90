#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

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

}  // namespace detail

}  // namespace veltrane
