#include "documents.h"
#include "shelltext.h"

namespace veltrane::detail {

namespace {

// A word is never evaluated: the line and the names of files may hold anything. So the script removes quotes and
// backslashes from the folder's word itself, and quotes names to match the open quotes.
constexpr char BASH_SCRIPT[] = R"(# bash completion for @TOOL@, @MADE@

_@FUNCTION@_databases() {
    local folder=.metadata program i
    for ((i = 1; i < ${#COMP_WORDS[@]} - 1; i++)); do
        [[ ${COMP_WORDS[i]} == -m || ${COMP_WORDS[i]} == --metadata ]] && folder=${COMP_WORDS[i + 1]}
    done
    case $folder in
        [\"\']*) folder=${folder:1} folder=${folder%[\"\']} ;;
        *) IFS= read folder <<<"$folder" ;; # takes the backslashes off
    esac
    [[ $folder == \~/* ]] && folder=$HOME/${folder:2}
    if [[ $folder != /* ]]; then
        program=$(type -P -- "${COMP_WORDS[0]}") || return
        program=$(readlink -f -- "$program")
        folder=${program%/*}/$folder
    fi
    [[ -f $folder/@TOOL@.ini ]] && LC_ALL=C sed -n @FILTER@ "$folder"/@TOOL@.ini 2>/dev/null
}

_@FUNCTION@_add_databases() {
    local name
    while IFS= read -r name; do
        case $1 in
            \"*) name=${name//\"/\\\"} name=${name//\$/\\\$} name=${name//\`/\\\`} ;;
            \'*) name=${name//\'/\'\\\'\'} ;;
            *) printf -v name %q "$name" ;;
        esac
        [[ $name == "${1#[\"\']}"* ]] && COMPREPLY+=("$name")
    done < <(_@FUNCTION@_databases)
}

_@FUNCTION@() {
    local word=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W @NAMES@ -- "$word")
        return
    fi
    case ${COMP_WORDS[COMP_CWORD - 1]} in
        @FLAGS@)
            mapfile -t COMPREPLY < <(compgen -W 'true false' -- "$word") ;;
        @TRISTATES@)
            mapfile -t COMPREPLY < <(compgen -W 'true false auto' -- "$word") ;;
        @FOLDERS@)
            compopt -o dirnames ;;
        @FILES@)
            compopt -o default ;;
        @TEXTS@)
            ;;
        *)
            _@FUNCTION@_add_databases "$word" ;;
    esac
}

complete -F _@FUNCTION@ @TOOL@
)";

}  // namespace

std::string BashCompletion(const std::string& /*tool*/) {
    using enum ValueKind;
    const std::string names = NamesOf({None, Flag, TriState, Text, File, Folder, Database}, " ");
    return FilledWithNames(Replaced(BASH_SCRIPT, "@NAMES@", ShellQuoted(names)));
}

}  // namespace veltrane::detail
