#!/usr/bin/env bash
# Completes command lines in a real shell: types them with tabs and checks the arguments that the command gets, or asks
# fish what it would complete.
# Usage: completion.sh SHELL COMPLETION_FILE
set -euo pipefail
command -v "$1" >/dev/null || exit 77
file=$(realpath "$2")
. "$(dirname "$0")/completion_world.sh"
export HOME=$world/home XDG_CONFIG_HOME=$world/home XDG_DATA_HOME=$world/home ZDOTDIR=$world HISTFILE='' INPUTRC=$world/inputrc TERM=dumb
echo "set keyseq-timeout 9000" >"$INPUTRC" # \e and the key after it may be read apart

# Types a line, of which \t completes and \e* inserts all completions, and compares the arguments. The input stays open
# until the shell ends: at its end script would stop a shell that is slow to read.
typed() {
    expect "$1" "$2" "$(PS1='' timeout 10 script -qec "$shell" /dev/null 2>&1 \
        < <(printf '%b\nexit\n' "$setup$1" && exec sleep 10 2>/dev/null) | tr -d '\r' | grep '^got' || true)"
}
# Compares the names that complete a line, separated by commas.
offers() {
    expect "$1" "$2" "$(fish --no-config --command 'source $argv[1]; complete --do-complete $argv[2]' -- "$file" "$1" 2>&1 |
        cut -f 1 | sort | paste -sd ,)"
}
case $1 in
bash)
    shell='bash --norc --noprofile -i' setup=". '$file'\n"
    typed 'veltrane --create-\e*' 'got<--create-autodoc><--create-changefile><--create-schema><--create-views>'
    typed 'veltrane --create-views a\t' 'got<--create-views><auto>'
    typed 'veltrane -q a\tx' 'got<-q><ax>'
    typed 'veltrane \e*' "got<archive><base><it's \$(touch evil)><my db><open>"
    typed 'veltrane my\\ \t' 'got<my db>'
    typed 'veltrane "it\t' "got<it's \$(touch evil)>"
    typed "veltrane 'it\t" "got<it's \$(touch evil)>"
    typed 'veltrane -m other el\t' 'got<-m><other><elsewhere>'
    typed "veltrane --metadata \"$world/real/other\" el\t" "got<--metadata><$world/real/other><elsewhere>"
    typed "veltrane -m '\$(touch evil)' \t" 'got<-m><$(touch evil)>'
    typed 'veltrane -m $(>evil) \t\e#veltrane ok' 'got<ok>'  # \e# makes the line a comment before it is run
    typed 'veltrane -dat run\tx' 'got<-dat><runx>'
    typed 'veltrane -log run\tx' 'got<-log><run.log><x>'
    typed 'veltrane --autodoc-title ba\tx' 'got<--autodoc-title><bax>' ;;&
zsh)
    shell='zsh -i' setup=''
    printf '%s\n' "fpath=('$(dirname "$file")' \$fpath)" 'autoload -U compinit' 'compinit -u -D' "PS1=''" \
        'unsetopt zle_bracketed_paste auto_remove_slash prompt_sp beep' >"$world/.zshrc" ;;&
bash | zsh)
    typed 'veltrane --logf\tx' 'got<--logfile><x>'
    typed 'veltrane -q f\t' 'got<-q><false>'
    typed 'veltrane -n my\t' 'got<-n><my db>'
    typed 'veltrane it\t' "got<it's \$(touch evil)>"
    typed "veltrane -m $world/real/other el\t" "got<-m><$world/real/other><elsewhere>"
    typed 'veltrane -dat my\t' 'got<-dat><my folder/>' ;;
fish)
    offers 'veltrane --logf' '--logfile'
    offers 'veltrane -c' '-c,-ca,-cfg,-cr,-cs,-cv'
    offers 'veltrane -q ' 'false,true'
    offers 'veltrane --create-views a' 'auto'
    offers 'veltrane ' "archive,base,it's \$(touch evil),my db,open"
    offers 'veltrane -n b' 'base'
    offers "veltrane -m $world/real/other " 'elsewhere'
    offers 'veltrane -dat m' 'my folder/'
    offers 'veltrane -dat r' ''
    offers 'veltrane -log r' 'run.log'
    offers 'veltrane --autodoc-title ba' '' ;;
esac
end
