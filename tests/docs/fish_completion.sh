#!/usr/bin/env bash
# Asks a real fish what it would complete.
# Usage: fish_completion.sh COMPLETION_FILE
set -euo pipefail
command -v fish >/dev/null || exit 77
file=$(realpath "$1")
. "$(dirname "$0")/completion_world.sh"
export HOME=$world/home XDG_CONFIG_HOME=$world/home XDG_DATA_HOME=$world/home

# Names that complete a line, with commas between, are the expected ones.
offers() {
    expect "$1" "$2" "$(fish --no-config --command 'source $argv[1]; complete --do-complete $argv[2]' -- "$file" "$1" 2>&1 |
        cut -f 1 | sort | paste -sd ,)"
}
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
offers 'veltrane --autodoc-title ba' ''
end
