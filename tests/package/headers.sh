#!/usr/bin/env bash
# Each installed header compiles alone with g++, all of them in both orders with clang++, without a warning, with nothing but
# the installed headers.
# Usage: headers.sh BUILD_FOLDER
. "$(dirname "$0")/common.sh"

cmake --install "$1" --component development --prefix "$temporary/prefix" >/dev/null
cd "$temporary/prefix/include"
find . -name '*.h' -printf '%P\n' | sort >"$temporary/headers"
[ "$(wc -l <"$temporary/headers")" -ge 20 ] || fail "where are the headers? $(cat "$temporary/headers")"

# compile COMPILER HEADER...
compile() {
    printf '#include "%s"\n' "${@:2}" |
        "$1" -std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -fsyntax-only -I. -x c++ - ||
        { echo "$1 refuses: ${*:2}"; return 1; }
}
export -f compile
xargs -P "$(nproc)" -L 1 bash -c 'compile g++ "$@"' _ <"$temporary/headers" || fail "headers need something in front"
for order in sort 'sort -r'; do
    mapfile -t headers < <($order "$temporary/headers")
    compile clang++ "${headers[@]}" || fail "headers do not compile with clang++"
done
