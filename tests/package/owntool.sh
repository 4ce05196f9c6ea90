#!/usr/bin/env bash
# The tool with options of its own, built as a CMake package and through pkg-config.
# Usage: owntool.sh BUILD_FOLDER
. "$(dirname "$0")/common.sh"

example=$tests/../../examples/owntool
prefix=$temporary/prefix
cmake --install "$1" --prefix "$prefix" >/dev/null
libraries=$(dirname "$(find "$prefix" -name libveltrane_base.so.1)")
export LD_LIBRARY_PATH=$libraries

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
