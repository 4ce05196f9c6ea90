#!/usr/bin/env bash
# Types command lines with tabulators into a real zsh and looks at the arguments that the command gets.
# Usage: zsh_completion.sh COMPLETION_FILE
set -euo pipefail
command -v zsh >/dev/null || exit 77
file=$(realpath "$1")
. "$(dirname "$0")/completion_world.sh"
mkdir "$world/zdot"
cat >"$world/zdot/.zshrc" <<SETUP
fpath=('$(dirname "$file")' \$fpath)
autoload -U compinit
compinit -u -D
unsetopt zle_bracketed_paste auto_remove_slash prompt_sp beep
PS1=''
SETUP

typed() {
    expect "$1" "$2" "$(printf '%b\nexit\n' "$1" |
        ZDOTDIR=$world/zdot TERM=dumb timeout 10 script -qec 'zsh -i' /dev/null 2>&1 | tr -d '\r' | grep '^got' || true)"
}
typed 'veltrane --logf\tx' 'got<--logfile><x>'
typed 'veltrane -q f\t' 'got<-q><false>'
typed 'veltrane -n my\t' 'got<-n><my db>'
typed 'veltrane it\t' "got<it's \$(touch evil)>"
typed "veltrane -m $world/real/other el\t" "got<-m><$world/real/other><elsewhere>"
typed 'veltrane -dat my\t' 'got<-dat><my folder/>'
end
