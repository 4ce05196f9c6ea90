#!/usr/bin/env bash
# Asks bash, zsh and fish what they would complete.
# Usage: completion.sh SHARE_FOLDER
set -euo pipefail
share=$(realpath "$1")
. "$(dirname "$0")/../docs/completion_world.sh"
. "$share/bash-completion/completions/veltrane-config"
in_bash() {
    read -ra COMP_WORDS <<<"$1"
    [[ $1 == *' ' ]] && COMP_WORDS+=('')
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    compopt() { COMPREPLY=(files); }
    _veltrane_config
    echo "${COMPREPLY[*]}"
}
in_fish() {
    fish --no-config --command 'source $argv[1]; complete --do-complete $argv[2]' -- \
        "$share/fish/vendor_completions.d/veltrane-config.fish" "$1" | cut -f 1 | sort | paste -sd ' '
}
while IFS='|' read -r line expected; do
    expect "bash: $line" "$expected" "$(in_bash "$line")"
    command -v fish >/dev/null && expect "fish: $line" "$expected" "$(in_fish "$line")"
done <<'CASES'
veltrane-config ex|explain
veltrane-config show logf|logfile
veltrane-config show --on|--only
veltrane-config --format j|json
veltrane-config names --ver|--version
CASES
expect "bash: behind the line of the tool" files "$(in_bash 'veltrane-config show -- ba')"
expect "bash: nothing to name" '' "$(in_bash 'veltrane-config files x')"
command -v zsh >/dev/null && zsh -n "$share/zsh/vendor-completions/_veltrane-config"
end
