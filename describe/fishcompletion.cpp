#include "documents.h"
#include "shelltext.h"

namespace veltrane::detail {

namespace {

constexpr char FISH_SCRIPT[] = R"(# fish completion for @TOOL@, @MADE@

function __@FUNCTION@_databases
    set -l words (commandline -opc)
    set -l folder .metadata
    for i in (seq 2 (math (count $words) - 1))
        contains -- $words[$i] -m --metadata; and set folder $words[(math $i + 1)]
    end
    set folder (string replace -r '^~/' "$HOME/" -- $folder)
    if not string match -q '/*' -- $folder
        set -l program (command -s -- $words[1]); or return
        set folder (string replace -r '/[^/]*$' '' -- (realpath -- $program))/$folder
    end
    test -f $folder/@TOOL@.ini; and LC_ALL=C sed -n @FILTER@ $folder/@TOOL@.ini 2>/dev/null
end

complete -c @TOOL@ -f -a '(__@FUNCTION@_databases)' -d database
@OPTIONS@)";

std::string_view ValueOf(ValueKind kind) {
    using enum ValueKind;
    if (kind == Flag) return " -xa 'true false'";
    if (kind == TriState) return " -xa 'true false auto'";
    if (kind == Folder) return " -xa '(__fish_complete_directories (commandline -ct) \"\")'";
    if (kind == Database) return " -xa '(__@FUNCTION@_databases)'";
    return kind == File ? " -rF" : " -x";
}

// A short name is one "old option" even when it is one letter, so that fish offers no bundles of letters.
std::string FishOptions(const std::string& tool) {
    std::string lines;
    for (const OptionText& option : GetOptionTexts(tool)) {
        lines += "complete -c @TOOL@";
        if (!option.shortOption.empty()) lines += " -o " + option.shortOption.substr(1);
        lines += " -l " + option.key;
        if (!option.description.empty()) lines += " -d " + FishQuoted(option.description);
        lines.append(ValueOf(option.kind)).append("\n");
    }
    return lines;
}

}  // namespace

std::string FishCompletion(const std::string& tool) {
    return Filled(
        FISH_SCRIPT,
        {{"@MADE@", MADE_FROM}, {"@FILTER@", FishQuoted(DatabaseFilter())}, {"@OPTIONS@", FishOptions(tool)}});
}

}  // namespace veltrane::detail
