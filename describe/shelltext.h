#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "optiontext.h"

namespace veltrane::detail {

/// One word of bash or zsh that means exactly this text.
std::string ShellQuoted(std::string_view text);
/// One word of fish that means exactly this text.
std::string FishQuoted(std::string_view text);
/// The same, quoted only where the shell needs it.
std::string ShellWord(std::string_view text);
std::string FishWord(std::string_view text);
/// A name for a function of any of the shells: letters, digits and underscores only.
std::string FunctionName(std::string_view text);

/// The short and long names of the options with a value of one of these kinds, with a separator between.
std::string NamesOf(std::initializer_list<ValueKind> kinds, std::string_view separator);

/// A program for GNU sed that prints the names of the databases in an INI file: its sections except those with a fixed
/// name and those of families.
std::string DatabaseFilter();

/// A script of bash or zsh with the marks that both have: where it comes from, the databases, and the options by what
/// follows them.
std::string FilledWithNames(std::string script);

/// The line that says where a file comes from.
inline constexpr char MADE_FROM[] = "made from the option table";

}  // namespace veltrane::detail
