// The man page and the completions.
#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "codelist.h"
#include "commandtable.h"
#include "lintcodes.h"
#include "plaintext.h"
#include "shelltext.h"
#include "troff.h"
#include "veltrane/options/xoptiondefinition.h"
#include "veltrane/platform/text/encoding.h"

namespace veltrane::config {

using namespace detail;  // shared by the generators of all tools

namespace {

constexpr char MAN_PAGE[] = R"(.TH "@TITLE@" 1 "" "@NAME@ @VERSION@" "@NAME@"
.ad l
.nh
.SH NAME
@NAME@ \- answer questions about the configuration of a tool
.SH SYNOPSIS
.B @NAME@
.RI [ option " ...] " command " [" argument " ...] [\-\- " tool\-argument " ...]"
.SH DESCRIPTION
.B @NAME@
starts the tool up as far as its configuration goes, looks, and answers one
question. Errors do not stop it: all of them are reported, and the rest is
shown. Only the commands set and unset and the option \-\-fix of lint change a
file.
.PP
Everything after
.B \-\-
is the tool's own command line.
.SH COMMANDS
@COMMANDS@.SH OPTIONS
@OPTIONS@.SH FINDINGS OF LINT
@LINTS@.SH EXIT STATUS
@EXITS@.SH ENVIRONMENT
.TP
.B NO_COLOR
If it has a value, no colours are used.
.SH EXAMPLES
.TP
.B @NAME@ show logfile \-\- base \-i team.ini
Where the value of one option comes from, and what it overrode.
.TP
.B @NAME@ freeze \-\- base >frozen.ini
One file that gives the values of this start-up on its own.
.SH SEE ALSO
veltrane\-config.schema.json among the documents of the library describes the
answers in JSON.
)";

constexpr char BASH[] = R"(# bash completion for @NAME@, made by @NAME@ --generate bash

@FUNCTION@() {
    local word=${COMP_WORDS[COMP_CWORD]} command= words= i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
            --) compopt -o default; return ;;
            @COMMANDS@) command=${command:-${COMP_WORDS[i]}} ;;
        esac
    done
    case ${COMP_WORDS[COMP_CWORD - 1]} in
@VALUES@        *)
            case $word,$command in
@OPTIONS@                *,) @ALL@ ;;
@WORDS@            esac ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}

complete -F @FUNCTION@ @NAME@
)";

constexpr char ZSH[] = R"(#compdef @NAME@
# made by @NAME@ --generate zsh

local command=${words[(r)(@COMMANDS@)]}
(( ${words[(i)--]} < CURRENT )) && { _files; return }
[[ $command == ${words[CURRENT]} ]] && command=
case ${words[CURRENT-1]} in
@VALUES@    *)
        case ${words[CURRENT]},$command in
@OPTIONS@            *,) @ALL@ ;;
@WORDS@        esac ;;
esac
)";

std::string Joined(const std::vector<std::string>& words, std::string_view separator) {
    std::string text;
    for (const std::string& word : words) text.append(text.empty() ? "" : separator).append(word);
    return text;
}

std::vector<std::string> CommandNames() {
    std::vector<std::string> names;
    for (const CommandRow& row : Commands()) names.emplace_back(row.name);
    return names;
}

std::vector<std::string> OptionNames() {
    std::vector<std::string> names;
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (row->HasOptionNumber()) names.push_back(ToUtf8(row->szLongName));
    }
    return names;
}

// The options of a command; without a command those of all.
std::vector<std::string> SwitchNames(std::string_view command) {
    std::vector<std::string> names{"--help"};
    if (command.empty()) names.emplace_back("--version");
    for (const SwitchRow& row : SWITCHES) {
        if (row.command == command || *row.command == '\0') names.emplace_back(row.name);
    }
    return names;
}

std::vector<std::string> Choices(const SwitchRow& row) {
    std::string words = row.value;
    if (words.find('|') == words.npos) return {};
    std::ranges::replace(words, '|', ' ');
    return SplitList(words);
}

std::string ListEntry(std::string_view head, std::string_view value, std::string_view summary) {
    const std::string argument = !value.empty() ? ' ' + Italic(value) : "";
    return Entry(Bold(head) + argument, Troff(summary) + '.');
}

std::string ManPage() {
    std::string commands;
    for (const CommandRow& row : Commands()) {
        commands += ListEntry(row.name, row.words, row.summary);
        for (const SwitchRow& own : SWITCHES) {
            if (std::string_view{own.command} != row.name) continue;
            commands += ".RS\n" + ListEntry(own.name, own.value, own.summary) + ".RE\n";
        }
    }
    std::string options = ListEntry("--help", "", "show the help; after a command, help for that command");
    options += ListEntry("--version", "", "show the version of the tool and of this program");
    for (const SwitchRow& row : SWITCHES) {
        if (*row.command == '\0') options += ListEntry(row.name, row.value, row.summary);
    }
    std::string lints;
    for (const LintRow& row : LINTS) {
        const std::string severity = SEVERITIES[static_cast<std::size_t>(row.severity)];
        lints += Entry(Bold(std::string{row.name} + ' ' + severity + ": " + row.title), Troff(row.explanation));
    }
    std::string exits;
    for (const auto& [code, meaning] : EXITS) exits += Entry(Bold(std::to_string(code)), Troff(Sentence(meaning)));
    return Filled(MAN_PAGE, {{"@COMMANDS@", commands}, {"@OPTIONS@", options}, {"@LINTS@", lints}, {"@EXITS@", exits}});
}

/// How a shell offers words and files.
struct ShellWords {
    std::string_view before;
    std::string_view after;
    std::string_view files;
};

std::string Offer(const ShellWords& shell, const std::vector<std::string>& words) {
    return std::string{shell.before} + Joined(words, " ") + std::string{shell.after};
}

// The branches of a script in bash or zsh.
std::string Script(std::string text, const ShellWords& shell, const std::string& indent) {
    std::string values;
    for (const SwitchRow& row : SWITCHES) {
        if (*row.value == '\0') continue;
        const std::string offered = row.kind == WordKind::File ? std::string{shell.files} : Offer(shell, Choices(row));
        values.append(indent).append(row.name).append(") ").append(offered).append(" ;;\n");
    }
    std::string options;
    std::string words;
    const std::string inner = indent + "        ";
    for (const CommandRow& row : Commands()) {
        options += inner + "-*," + row.name + ") " + Offer(shell, SwitchNames(row.name)) + " ;;\n";
        if (row.kind == WordKind::None) continue;
        const bool isOption = row.kind == WordKind::Option;
        words += inner + "*," + row.name + ") " + (isOption ? Offer(shell, OptionNames()) : std::string{shell.files}) +
                 " ;;\n";
    }
    options += inner + "-*,) " + Offer(shell, SwitchNames("")) + " ;;\n";
    return Filled(std::move(text), {{"@VALUES@", values},
                                    {"@OPTIONS@", options},
                                    {"@WORDS@", words},
                                    {"@ALL@", Offer(shell, CommandNames())},
                                    {"@COMMANDS@", Joined(CommandNames(), "|")}});
}

std::string FishLine(std::string_view condition, std::string_view rest) {
    const std::string when = condition.empty() ? "" : " -n " + FishQuoted(condition);
    return "complete -c @NAME@" + when + " " + std::string{rest} + "\n";
}

std::string FishCompletion() {
    std::string text = "# fish completion for @NAME@, made by @NAME@ --generate fish\n\n";
    text += FishLine("", "-f");
    text += FishLine("contains -- -- (commandline -opc)", "-F");
    for (const CommandRow& row : Commands()) {
        text += FishLine("__fish_use_subcommand", "-a " + std::string{row.name} + " -d " + FishQuoted(row.summary));
        const std::string seen = "__fish_seen_subcommand_from " + std::string{row.name};
        if (row.kind == WordKind::File) text += FishLine(seen, "-F");
        if (row.kind == WordKind::Option) text += FishLine(seen, "-a " + FishQuoted(Joined(OptionNames(), " ")));
    }
    for (const SwitchRow& row : SWITCHES) {
        const std::string seen = *row.command ? "__fish_seen_subcommand_from " + std::string{row.command} : "";
        std::string rest = "-l " + std::string{row.name}.substr(2) + " -d " + FishQuoted(row.summary);
        if (row.kind == WordKind::File) rest += " -rF";
        if (row.kind == WordKind::Text) rest += " -xa " + FishQuoted(Joined(Choices(row), " "));
        text += FishLine(seen, rest);
    }
    return text + FishLine("", "-l help -s h -d 'show the help'") + FishLine("", "-l version -d 'show the version'");
}

}  // namespace

std::vector<CommandRow> Commands() {
    std::vector<CommandRow> rows{std::begin(COMMANDS), std::end(COMMANDS)};
    if (!HasOption(eOptionTableNameRules) && !HasOption(eOptionColumnNameRules)) {
        std::erase_if(rows, [](const CommandRow& row) { return row.name == std::string_view{"names"}; });
    }
    return rows;
}

std::string MakeDocument(const std::string& kind, const std::string& name, const std::string& version) {
    const std::string text = kind == "man"    ? ManPage()
                             : kind == "bash" ? Script(BASH, {"words='", "'", "compopt -o default"}, "        ")
                             : kind == "zsh"  ? Script(ZSH, {"compadd -- ", "", "_files"}, "    ")
                                              : FishCompletion();
    const auto quoted = kind == "man" ? Troff : kind == "fish" ? FishWord : ShellWord;
    return Filled(text, {{"@TITLE@", Troff(Capitals(name))},
                         {"@FUNCTION@", '_' + FunctionName(name)},
                         {"@VERSION@", Troff(version)},
                         {"@NAME@", quoted(name)}});
}

}  // namespace veltrane::config
