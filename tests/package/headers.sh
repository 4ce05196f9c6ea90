#!/usr/bin/env bash
# Each installed header compiles alone, without a warning, with g++ and clang++, with nothing but the installed headers.
# Usage: headers.sh BUILD_FOLDER
. "$(dirname "$0")/common.sh"

cmake --install "$1" --component development --prefix "$temporary/prefix" >/dev/null
cd "$temporary/prefix/include"
find . -name '*.h' -printf '%P\n' | sort >"$temporary/headers"
[ "$(wc -l <"$temporary/headers")" -ge 20 ] || fail "where are the headers? $(cat "$temporary/headers")"

compile() {
    echo "#include \"$2\"" |
        "$1" -std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -fsyntax-only -I. -x c++ - ||
        { echo "$2 does not compile alone with $1"; return 1; }
}
export -f compile
for compiler in g++ clang++; do sed "s/^/$compiler /" "$temporary/headers"; done |
    xargs -P "$(nproc)" -L 1 bash -c 'compile "$@"' _ || fail "headers need something in front"
