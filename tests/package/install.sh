#!/usr/bin/env bash
# The installed tree works for a program, and for a tool with options of its own, that find it as a CMake package or
# through pkg-config, and contains no path of the machine: everything is tried after the tree was moved.
# Usage: install.sh BUILD_FOLDER
. "$(dirname "$0")/common.sh"

cmake --install "$1" --prefix "$temporary/first" >/dev/null
! grep -rlF -e "$temporary" -e "$(dirname "$(dirname "$1")")" "$temporary/first" ||
    fail "installed files hold paths of this machine"
prefix="$temporary/moved prefix"
mv "$temporary/first" "$prefix"

[ -z "$(find "$prefix" -path '*/detail*' -o -path '*/internal*')" ] || fail "internal headers are installed"
[ -f "$prefix/include/veltrane/foundation/xexception.h" ] || fail "the headers are not in their folders"
libraries=$(dirname "$(find "$prefix" -name libveltrane_base.so.1)")
[ -L "$libraries/libveltrane_base.so" ] && [ -L "$libraries/libveltrane_base.so.1" ] ||
    fail "the links to the library are missing"
[ -f "$prefix/share/doc/veltrane_base/README.md" ] || fail "the documents are missing"

host=$prefix/bin/veltrane
loaded=$(env -u LD_LIBRARY_PATH ldd "$host" | sed -n 's/.*libveltrane_base.so.1 => \(.*\) (.*/\1/p')
[ "$loaded" -ef "$libraries/libveltrane_base.so.1" ] || fail "the host does not take the library beside it but $loaded"
"$host" --help </dev/null | tr -d '\r' >"$temporary/help"
expect "Synopsis: Veltrane [options] <database-name>" "$temporary/help"

example=$tests/../../examples/owntool
for project in "$tests/consumer" "$example"; do
    package=$temporary/package-$(basename "$project")
    cmake -S "$project" -B "$package" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
    cmake --build "$package" >"$temporary/log" || fail "$(tail -n 30 "$temporary/log")"
done
run_consumer "$temporary/package-consumer/consumer"
run_tool "$package/owntool"
run_config "$package/owntool-config"
find "$libraries" -name '*.a' -exec nm -C --defined-only {} + >"$temporary/names"
! grep -E '^[0-9a-f]+ [ABCDRT] ' "$temporary/names" | grep -vE '^[0-9a-f]+ . veltrane::' || fail "names that a tool's own would replace"
companion=$temporary/package-consumer/companion
! "$companion" shwo 2>"$temporary/errors" || fail "there is no command 'shwo'"
expect "a\"b^c\\d@e'f-config: unknown command 'shwo'; did you mean 'show'?" "$temporary/errors"
timeout 10 "$companion" --help >"$temporary/help" || fail "the help does not end"
for kind in man bash zsh fish; do
    "$companion" $kind "$temporary/tool.$kind" && "$companion" --generate $kind >"$temporary/config.$kind"
done
for part in tool- config-config; do
    file=$temporary/${part%%-*} name=${part#*-}
    expect ".B a\\(dqb\\(hac\\ed@e\\(aqf${name:+\\-$name}" "$file.man"
    expect "complete -F _a_b_c_d_e_f${name:+_$name} 'a\"b^c\\d@e'\\''f${name:+-$name}'" "$file.bash"
    grep -qF "complete -c 'a\"b^c\\\\d@e\\'f${name:+-$name}' " "$file.fish" || fail "$file.fish: $(cat "$file.fish")"
    bash -n "$file.bash" || fail "$file.bash is no script"
done
! cmake -S "$tests/consumer" -B "$temporary/later" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" -DCONSUMER_VERSION=0.9 \
    >/dev/null 2>&1 || fail "the package passes for another major version"

export PKG_CONFIG_PATH=$libraries/pkgconfig
eval "flags=($(pkg-config --cflags --libs 'veltrane_base >= 1.0'))"
export LD_LIBRARY_PATH=$libraries
g++ -std=c++20 -I"$tests/consumer" "$tests/consumer"/*.cpp "${flags[@]}" -o "$temporary/pkgconfig"
run_consumer "$temporary/pkgconfig"
g++ -std=c++20 "$example/owntool.cpp" "${flags[@]}" -o "$temporary/owntool"
run_tool "$temporary/owntool"
act='#include "options.h"
#include "veltrane/tool/tool.h"
void Act(veltrane::Tool<OWN_TABLE>&)'
echo "$act {}" >"$temporary/act.cpp"
echo "$act; int main() { return veltrane::RunTool({}, Act); }" >"$temporary/main.cpp"
g++ -std=c++20 -I"$example" "$temporary"/{act,main}.cpp "${flags[@]}" -o "$temporary/parts" || fail "two source files, two tables"
