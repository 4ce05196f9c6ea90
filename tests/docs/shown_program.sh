#!/usr/bin/env bash
# Runs the program of a page, with the command line of the page if there is one, and compares what it prints with what
# the page shows. Usage: shown_program.sh SOURCE_FOLDER PAGE PROGRAM
set -euo pipefail
cd "$1"
expected=$(sed -n '/^<!-- prints -->$/{n; :line; n; /^```$/q; p; b line}' "$2")
[ -n "$expected" ] || { echo "$2 says nothing of what is printed"; exit 1; }
arguments=$(sed -n 's/^With `\(.*\)` on its command line it prints$/\1/p' "$2")
unset data metadata VELTRANE_SUMMARY VORNAK_DRIVES
export VORNAK_REGISTRY=/dev/null
diff <(echo "$expected") <(eval "\"\$3\" $arguments")
