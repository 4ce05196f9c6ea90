#pragma once

#include <string>
#include <vector>

#include "veltrane/platform/text/characters.h"

// The command line of veltrane-config. Its help, its man page and its completions are made from these rows.

namespace veltrane::config {

/// What a word of the command line can be.
enum class WordKind { None, Option, File, Text };

struct CommandRow {
    const char* name;
    const char* words;  ///< what follows, as the help shows it
    WordKind kind;
    const char* summary;
    const char* example;  ///< a whole command line, without the name of the program
};

struct SwitchRow {
    const char* command;  ///< to which it belongs; empty for all
    const char* name;
    const char* value;  ///< as the help shows it; empty for none. Words separated by bars are the choice
    WordKind kind;
    const char* summary;
};

enum ExitCode { EXIT_ANSWERED = 0, EXIT_FINDINGS = 1, EXIT_REFUSED = 2 };

struct ExitRow {
    ExitCode code;
    const char* meaning;
};

// clang-format off
inline constexpr CommandRow COMMANDS[] = {
    {"show",    "[NAME ...]",     WordKind::Option, "values, where they come from and what they overrode",     "show logfile -- base -i team.ini"},
    {"lint",    "[FILE ...]",     WordKind::File,   "everything that is wrong with the configuration",         "lint --strict -- base -i team.ini"},
    {"explain", "NAME ...",       WordKind::Option, "the steps from a key to its value",                       "explain logfile -- base -i team.ini"},
    {"names",   "[FILE ...]",     WordKind::File,   "names as the naming rules change them",                   "names --version 3,5 names.txt -- base"},
    {"diff",    "[DOCUMENT ...]", WordKind::File,   "how two configurations differ",                           "diff -- base -i team.ini -- base -i other.ini"},
    {"set",     "NAME VALUE",     WordKind::Option, "give an option a value in the user or the basic file",    "set logfile run.log -- base -i team.ini"},
    {"unset",   "NAME",           WordKind::Option, "remove the value of an option from the file",             "unset logfile -- base -i team.ini"},
    {"freeze",  "",               WordKind::None,   "one basic file that gives the same values on its own",    "freeze -- base -i team.ini >frozen.ini"},
    {"files",   "",               WordKind::None,   "every place where start-up looks, and what is there",     "files -- base -i team.ini"},
    {"errors",  "LOG ...",        WordKind::File,   "the errors of a log",                                     "errors base-run.log"},
    {"lsp",     "",               WordKind::None,   "all of it in an editor, by the Language Server Protocol", "lsp -- base -i team.ini"},
};

inline constexpr SwitchRow SWITCHES[] = {
    {"",      "--tool",     "PATH",                   WordKind::File, "the tool; default: the one beside this program"},
    {"",      "--format",   "text|json|github|sarif", WordKind::Text, "form of the answer; github and sarif only for lint"},
    {"",      "--color",    "auto|never",             WordKind::Text, "colour of errors and warnings on a terminal"},
    {"",      "--generate", "man|bash|zsh|fish",      WordKind::Text, "print a man page or completion instead of an answer"},
    {"show",  "--all",      "",                       WordKind::None, "also options without a value"},
    {"show",  "--only",     "LAYER",                  WordKind::Text, "only values from one layer, such as 'user file'"},
    {"lint",  "--strict",   "",                       WordKind::None, "warnings count as errors"},
    {"lint",  "--code",     "LIST",                   WordKind::Text, "only these codes (C01,C02), or all but some (-C13)"},
    {"lint",  "--root",     "FOLDER",                 WordKind::File, "base of github and sarif paths; default: current folder"},
    {"lint",  "--fix",      "",                       WordKind::None, "mend what is certain: misspelt names, a missing ']'"},
    {"lint",  "--force",    "",                       WordKind::None, "with --fix: also move keys to their right section"},
    {"lint",  "--dry-run",  "",                       WordKind::None, "with --fix: change nothing; print a unified diff"},
    {"lint",  "--explain",  "LIST",                   WordKind::Text, "what codes mean (C05, or 'all')"},
    {"diff",  "--places",   "",                       WordKind::None, "also values that differ only in their place"},
    {"diff",  "--all",      "",                       WordKind::None, "also facts about the program: its paths, version, time"},
    {"set",   "--in",       "user|basic",             WordKind::Text, "the file to change; default: the user file, if any"},
    {"set",   "--dry-run",  "",                       WordKind::None, "change nothing; print the change as a unified diff"},
    {"set",   "--force",    "",                       WordKind::None, "set the value even if lint objects to it"},
    {"unset", "--in",       "user|basic",             WordKind::Text, "the file to change; default: the user file, if any"},
    {"unset", "--dry-run",  "",                       WordKind::None, "change nothing; print the change as a unified diff"},
    {"unset", "--all",      "",                       WordKind::None, "every line of the key, not only the one that is read"},
    {"names", "--version",  "N[,M ...]",              WordKind::Text, "versions of the naming rules; default: all"},
    {"names", "--rules",    "",                       WordKind::None, "list the rules instead, in the order they apply"},
    {"names", "--limit",    "BYTES",                  WordKind::Text, "report longer names; default: 30"},
};

inline constexpr ExitRow EXITS[] = {
    {EXIT_ANSWERED, "answered"},
    {EXIT_FINDINGS, "answered, and there is something to look at: an error that lint finds (with --strict also a warning), "
                    "a difference, a collision, an option without a value, a value that set gives and that is not in "
                    "force, a value that unset does not find, a value that freeze cannot carry, a source that cannot be "
                    "read, a start-up that would fail"},
    {EXIT_REFUSED,  "not answered: the command line is wrong, the tool is not found, a change is refused, a file cannot be "
                    "read or written, or memory runs out"},
};
// clang-format on

/// Those that make sense for the tool: without naming rules there are no names to change.
std::vector<CommandRow> Commands();

/// The man page of the program, or its completion for a shell, made from these rows and the options of the tool.
/// @param kind  "man", "bash", "zsh" or "fish" @param name  of the program
std::string MakeDocument(const std::string& kind, const std::string& name, const std::string& version);

/// A summary or a meaning as a sentence.
inline std::string Sentence(std::string text) {
    text[0] = detail::UpperAscii(text[0]);
    return text + '.';
}

}  // namespace veltrane::config
