#!/usr/bin/env bash
# Formats man pages: nothing to complain about, and no line wider than 80 columns.
# Usage: man_pages.sh PAGE...
set -euo pipefail
export LC_ALL=C.UTF-8 MANWIDTH=80
command -v man >/dev/null && command -v groff >/dev/null || exit 77
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0
for page in "$@"; do
    groff -man -Tutf8 -ww -b -z "$page" 2>"$work/complaints"
    man --warnings=all --local-file "$page" >"$work/text" 2>>"$work/complaints"
    grep -q 'SEE ALSO' "$work/text" || { echo "$page: not a whole page"; failed=1; }
    if [ -s "$work/complaints" ]; then
        cat "$work/complaints"
        failed=1
    fi
    if grep -nE '.{81}' "$work/text"; then
        echo "$page: wider than 80 columns"
        failed=1
    fi
done
exit "$failed"
