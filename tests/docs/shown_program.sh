#!/usr/bin/env bash
# Runs the program of a page and compares what it prints with what the page says.
# Usage: shown_program.sh PAGE PROGRAM
set -euo pipefail
expected=$(sed -n '/^<!-- prints -->$/{n; :line; n; /^```$/q; p; b line}' "$1")
[ -n "$expected" ] || {
    echo "$1 says nothing of what is printed"
    exit 1
}
diff <(echo "$expected") <("$2")
