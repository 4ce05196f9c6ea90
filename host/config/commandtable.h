#pragma once

// The command line of veltrane-config. Its help, its man page and its completions are made from these rows.

namespace veltrane::config {

/// What a word of the command line can be.
enum class WordKind { None, Option, File, Text };

struct CommandRow {
    const char* name;
    const char* words;  ///< what follows, as the help shows it
    WordKind kind;
    const char* summary;
};

struct SwitchRow {
    const char* command;  ///< that it belongs to; empty for all
    const char* name;
    const char* value;  ///< as the help shows it; empty for none. Words with bars between are the choice
    WordKind kind;
    const char* summary;
};

// clang-format off
inline constexpr CommandRow COMMANDS[] = {
    {"show",    "[NAME ...]",    WordKind::Option, "values, where they come from and what they overrode"},
    {"lint",    "[FILE ...]",    WordKind::File,   "everything that is wrong with the configuration"},
    {"explain", "NAME ...",      WordKind::Option, "the steps from a key to its value"},
    {"names",   "[FILE ...]",    WordKind::File,   "what the naming rules make of names"},
    {"freeze",  "",              WordKind::None,   "one basic file that alone brings the same values"},
    {"files",   "",              WordKind::None,   "every place that is looked at, and what is there"},
    {"errors",  "LOG ...",       WordKind::File,   "the errors of a log"},
};

inline constexpr SwitchRow SWITCHES[] = {
    {"",      "--tool",      "PATH",               WordKind::File, "the tool; without it the one beside this program"},
    {"",      "--format",    "text|json",          WordKind::Text, "form of the answer"},
    {"",      "--color",     "auto|never",         WordKind::Text, "colour of errors and warnings on a terminal"},
    {"",      "--generate",  "man|bash|zsh|fish",  WordKind::Text, "no answer, but man page or completion"},
    {"show",  "--all",       "",                   WordKind::None, "options without a value, too"},
    {"show",  "--only",      "LAYER",              WordKind::Text, "only what comes from one layer, such as 'user file'"},
    {"lint",  "--strict",    "",                   WordKind::None, "warnings count as errors"},
    {"lint",  "--code",      "LIST",               WordKind::Text, "only these codes (C01,C02), or all but some (-C13)"},
    {"lint",  "--explain",   "LIST",               WordKind::Text, "what codes mean (C05, or 'all')"},
    {"names", "--version",   "N[,M ...]",          WordKind::Text, "versions of the rules; all without it"},
    {"names", "--rules",     "",                   WordKind::None, "the rules themselves, in the order they apply"},
    {"names", "--limit",     "BYTES",              WordKind::Text, "longest name; 30 without it"},
};
// clang-format on

}  // namespace veltrane::config
