#include "documents.h"
#include "shelltext.h"

namespace veltrane::detail {

namespace {

constexpr char ZSH_SCRIPT[] = R"(#compdef @TOOL@
# zsh completion for @TOOL@, @MADE@

_@FUNCTION@_databases() {
    local folder=.metadata program=${(Q)words[1]} i
    local -a names
    for ((i = 2; i < $#words; i++)); do
        [[ $words[i] == (-m|--metadata) ]] && folder=${(Q)words[i + 1]}
    done
    [[ $folder == \~/* ]] && folder=$HOME/${folder:2}
    if [[ $folder != /* ]]; then
        program=$(whence -p -- "$program") || return 1
        folder=${program:A:h}/$folder
    fi
    [[ -f $folder/@TOOL@.ini ]] || return 1
    names=("${(@f)$(LC_ALL=C sed -n @FILTER@ "$folder"/@TOOL@.ini 2>/dev/null)}")
    compadd -X database -a names
}

_@FUNCTION@() {
    local -a options=(
@OPTIONS@    )
    if [[ $PREFIX == -* ]]; then
        _describe -o option options
        return
    fi
    case ${words[CURRENT - 1]} in
        @FLAGS@)
            compadd true false ;;
        @TRISTATES@)
            compadd true false auto ;;
        @FOLDERS@)
            _files -/ ;;
        @FILES@)
            _files ;;
        @TEXTS@)
            _message text ;;
        *)
            _@FUNCTION@_databases ;;
    esac
}

_@FUNCTION@ "$@"
)";

std::string Described(const std::string& name, const std::string& description) {
    if (name.empty()) return {};
    const std::string colon = description.empty() ? "" : ":";
    return "        " + ShellQuoted(name + colon + description) + '\n';
}

std::string ZshOptions(const std::string& tool) {
    std::string lines;
    for (const OptionText& option : GetOptionTexts(tool)) {
        lines += Described(option.shortOption, option.description) + Described(option.longOption, option.description);
    }
    return lines;
}

}  // namespace

std::string ZshCompletion(const std::string& tool) {
    return Replaced(FilledWithNames(ZSH_SCRIPT), "@OPTIONS@", ZshOptions(tool));
}

}  // namespace veltrane::detail
