#!/usr/bin/env bash
# Types command lines with tabulators into a real bash and looks at the arguments that the command gets.
# Usage: bash_completion.sh COMPLETION_FILE
set -euo pipefail
file=$(realpath "$1")
. "$(dirname "$0")/completion_world.sh"

# Types a line, of which \t completes and \e* inserts all completions, and compares the arguments.
typed() {
    expect "$1" "$2" "$(printf '%b\nexit\n' ". '$file'\n$1" |
        HISTFILE='' PS1='' TERM=dumb INPUTRC=/dev/null timeout 10 script -qec "bash --norc --noprofile -i" /dev/null 2>&1 |
        tr -d '\r' | grep '^got' || true)"
}
typed 'veltrane --logf\tx' 'got<--logfile><x>'
typed 'veltrane --create-\e*' 'got<--create-autodoc><--create-changefile><--create-schema><--create-views>'
typed 'veltrane -q f\t' 'got<-q><false>'
typed 'veltrane --create-views a\t' 'got<--create-views><auto>'
typed 'veltrane -q a\tx' 'got<-q><ax>'
typed 'veltrane \e*' "got<archive><base><it's \$(touch evil)><my db><open>"
typed 'veltrane -n my\t' 'got<-n><my db>'
typed 'veltrane my\\ \t' 'got<my db>'
typed 'veltrane "it\t' "got<it's \$(touch evil)>"
typed "veltrane 'it\t" "got<it's \$(touch evil)>"
typed 'veltrane -m other el\t' 'got<-m><other><elsewhere>'
typed "veltrane --metadata \"$world/real/other\" el\t" "got<--metadata><$world/real/other><elsewhere>"
typed "veltrane -m '\$(touch evil)' \t" 'got<-m><$(touch evil)>'
typed 'veltrane -m $(>evil) \t\e#veltrane ok' 'got<ok>'  # \e# makes the line a comment before it is run
typed 'veltrane -dat my\t' 'got<-dat><my folder/>'
typed 'veltrane -dat run\tx' 'got<-dat><runx>'
typed 'veltrane -log run\tx' 'got<-log><run.log><x>'
typed 'veltrane --autodoc-title ba\tx' 'got<--autodoc-title><bax>'
end
