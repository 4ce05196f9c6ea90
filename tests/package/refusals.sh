#!/usr/bin/env bash
# Neither g++ nor clang++ compiles a table that breaks a rule, or a name that no option has, and the compiler shows why.
# Usage: refusals.sh SOURCE_FOLDER
. "$(dirname "$0")/common.sh"
cd "$1"

lines() { grep -n "// $1" "$source" | cut -d: -f1; }
# Exactly the marked lines are refused; what the compiler must show comes from standard input.
check() {
    source=$2
    limit=$([ "$1" = g++ ] && echo -fmax-errors=0 || echo -ferror-limit=0)
    "$1" -std=c++20 -Werror "$limit" -fsyntax-only -I. "$source" 2>"$temporary/out" && fail "$1 compiles $source"
    # Both name the line in the expansions that lead to an error inside a header.
    sed -nE "s|^$source:([0-9]+):[0-9]+:( error\|   in\|   required from here\| note: in inst).*|\1|p" "$temporary/out" |
        sort -nu | grep -vxFf <(lines within) >"$temporary/refused"
    diff <(lines refused) "$temporary/refused" || fail "$1 refuses other lines: $(cat "$temporary/out")"
    ! grep "xowntable.h.* error:" "$temporary/out" | grep -v RowRefused || fail "$1 shows more than the row"
    while read -r text; do
        grep -qF -- "$text" "$temporary/out" || fail "$1 does not show: $text"
    done
}

names=tests/package/refused_names.cpp
for compiler in g++ clang++; do
    check $compiler tests/package/refused_tables.cpp \
        < <(sed -n '/^enum class Fault/,/^}/s/^    \([A-Z].*\),$/Fault::\1/p' veltrane/options/optionrules.h | grep -v ::None)
    check $compiler $names \
        < <(sed -n 's|.*// refused: ||p' $names; sed -n 's/.*sizeof(Name) == 0, "\(.*\)");/\1/p' veltrane/options/{optionname,libraryrows}.h)
done
