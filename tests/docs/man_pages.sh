#!/usr/bin/env bash
# Formats man pages: no warning, and no line wider than 80 columns.
# Usage: man_pages.sh PAGE...
set -euo pipefail
export LC_ALL=C.UTF-8 MANWIDTH=80
command -v man >/dev/null && command -v groff >/dev/null || exit 77
for page in "$@"; do
    complaints=$({ groff -man -Tutf8 -ww -b -z "$page" && man --warnings=all --local-file "$page" >/dev/null; } 2>&1)
    text=$(man --local-file "$page" 2>&1)
    [[ $text == *'SEE ALSO'* ]] || { echo "$page: not a whole page"; exit 1; }
    [ -z "$complaints" ] || { echo "$complaints"; exit 1; }
    ! grep -nE '.{81}' <<<"$text" || { echo "$page: wider than 80 columns"; exit 1; }
done
