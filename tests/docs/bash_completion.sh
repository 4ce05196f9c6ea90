#!/usr/bin/env bash
# Types command lines with tabulators into a real bash and looks at the arguments that the command gets.
# Usage: bash_completion.sh COMPLETION_FILE
set -euo pipefail
file=$(realpath "$1")
. "$(dirname "$0")/completion_world.sh"
bash -n "$file"
failed=0

# Types a line, of which \t completes and \e* inserts all completions, and compares the arguments.
typed() {
    local line=$1 expected=$2 got
    got=$(printf '%b\nexit\n' "$line" |
        HISTFILE='' PS1='' TERM=dumb INPUTRC=/dev/null timeout 10 script -qec "bash --norc --noprofile -i" /dev/null 2>&1 |
        tr -d '\r' | grep '^got' || true)
    [ "$got" = "$expected" ] || {
        printf '%s\n  expected %s\n  got      %s\n' "$line" "$expected" "$got"
        failed=1
    }
}
load=". '$file'\n"
typed "${load}veltrane --logf\tx" 'got<--logfile><x>'
typed "${load}veltrane --create-\e*" 'got<--create-autodoc><--create-changefile><--create-schema><--create-views>'
typed "${load}veltrane -q f\t" 'got<-q><false>'
typed "${load}veltrane --create-views a\t" 'got<--create-views><auto>'
typed "${load}veltrane -q a\tx" 'got<-q><ax>'
typed "${load}veltrane ba\t-q" 'got<base><-q>'
typed "${load}veltrane \e*" "got<archive><base><it's \$(touch evil)><my db><open>"
typed "${load}veltrane -n my\t" 'got<-n><my db>'
typed "${load}veltrane my\\\\ \t" 'got<my db>'
typed "${load}veltrane \"it\t" "got<it's \$(touch evil)>"
typed "${load}veltrane 'it\t" "got<it's \$(touch evil)>"
typed "${load}veltrane -m other el\t" 'got<-m><other><elsewhere>'
typed "${load}veltrane --metadata \"$world/real/other\" el\t" "got<--metadata><$world/real/other><elsewhere>"
typed "${load}veltrane -m '\$(touch evil)' \t" 'got<-m><$(touch evil)>'
typed "${load}veltrane -m \$(>evil) \t\e#veltrane ok" 'got<ok>'  # \e# makes the line a comment before it is run
typed "${load}veltrane -dat my\t" 'got<-dat><my folder/>'
typed "${load}veltrane -dat run\tx" 'got<-dat><runx>'
typed "${load}veltrane -log run\tx" 'got<-log><run.log><x>'
typed "${load}veltrane --autodoc-title ba\tx" 'got<--autodoc-title><bax>'
[ ! -e evil ] || { echo "a name was run as a command"; failed=1; }
exit "$failed"
