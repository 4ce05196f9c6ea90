#!/usr/bin/env bash
# A table that breaks a rule does not compile, with g++ and clang++, and the compiler shows the rule.
# Usage: refusals.sh SOURCE_FOLDER
. "$(dirname "$0")/common.sh"
cd "$1"
source=tests/package/refused_tables.cpp

lines() { grep -n "// $1" $source | cut -d: -f1; }
lines refused >"$temporary/expected"
for compiler in g++ clang++; do
    limit=$([ $compiler = g++ ] && echo -fmax-errors=0 || echo -ferror-limit=0)
    "$compiler" -std=c++20 -Werror "$limit" -fsyntax-only -I. $source 2>"$temporary/out" && fail "$compiler compiles it"
    # g++ names the line in the expansions that lead to an error inside a header.
    sed -nE "s|^$source:([0-9]+):[0-9]+:( error\|   in).*|\1|p" "$temporary/out" | sort -nu |
        grep -vxFf <(lines within) >"$temporary/refused"
    diff "$temporary/expected" "$temporary/refused" || fail "$compiler refuses other lines: $(cat "$temporary/out")"
    grep -ohE 'L"The (option|section) [^"]*' veltrane/options/optionrules.h | sort -u >"$temporary/rules"
    while read -r rule; do
        grep -qF -- "$rule" "$temporary/out" || fail "$compiler does not show: $rule"
    done <"$temporary/rules"
done
