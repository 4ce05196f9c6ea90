#!/usr/bin/env bash
# The tool with options of its own, built as a CMake package, through pkg-config and with the sources of the library.
# Usage: owntool.sh BUILD_FOLDER SOURCE_FOLDER
. "$(dirname "$0")/common.sh"

example=$2/examples/owntool
prefix=$temporary/prefix
cmake --install "$1" --prefix "$prefix" >/dev/null
libraries=$(dirname "$(find "$prefix" -name libveltrane_base.so.1)")

# run_tool PROGRAM: the tool sees its own options in file and command line.
run_tool() {
    local words=(-m "$example/metadata" --dry-run -src typed.txt)
    LD_LIBRARY_PATH=$libraries "$1" "${words[@]}" >"$temporary/out" || fail "$1 ended with $?: $(cat "$temporary/out")"
    cat >"$temporary/expected" <<'END'
database: base (basic file:3)
team:     base-team (basic file:6)
unit:     cm (basic file:7)
rounded:  as the unit wants
source 0: typed.txt
steps:    1 5 10
nothing is done
END
    diff "$temporary/expected" "$temporary/out" || fail "$1 prints something else"
    LD_LIBRARY_PATH=$libraries "$1" --help </dev/null | tr -d '\r' >"$temporary/help"
    expect "Synopsis: owntool [options] <database-name>" "$temporary/help"
    grep -q 'Measure in this unit' "$temporary/help" || fail "the help does not show the tool's options"
}

cmake -S "$example" -B "$temporary/package" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$temporary/package" >"$temporary/log" || fail "$(tail -n 30 "$temporary/log")"
run_tool "$temporary/package/owntool"
for page in man/man1/owntool.1 man/man5/owntool.ini.5 bash-completion/completions/owntool zsh/vendor-completions/_owntool \
    fish/vendor_completions.d/owntool.fish; do
    grep -q 'dry.*run' "$temporary/package/share/$page" || fail "$page does not name the tool's options"
    ! grep -qi '@[a-z]*@' "$temporary/package/share/$page" || fail "$page holds a mark"
done

export PKG_CONFIG_PATH=$libraries/pkgconfig
eval "flags=($(pkg-config --cflags --libs veltrane_base))"
g++ -std=c++20 "$example/owntool.cpp" "${flags[@]}" -o "$temporary/owntool"
run_tool "$temporary/owntool"

cmake -S "$example" -B "$temporary/sources" -G Ninja -DOWNTOOL_SUBDIRECTORY="$2" -DCMAKE_CXX_FLAGS=-O0 >/dev/null
cmake --build "$temporary/sources" --target owntool >"$temporary/log" || fail "$(tail -n 30 "$temporary/log")"
run_tool "$temporary/sources/owntool"
