#!/usr/bin/env bash
# The installed tree works for a program that finds it as a CMake package or through pkg-config, and holds no path of
# the machine: everything is tried after the tree was moved.
# Usage: install.sh BUILD_FOLDER
. "$(dirname "$0")/common.sh"

cmake --install "$1" --prefix "$temporary/first" >/dev/null
if grep -rlF -e "$temporary" -e "$(dirname "$(dirname "$1")")" "$temporary/first"; then
    fail "installed files hold paths of this machine"
fi
prefix="$temporary/moved prefix"
mv "$temporary/first" "$prefix"

[ -z "$(find "$prefix" -path '*/detail*')" ] || fail "internal headers are installed"
[ -f "$prefix/include/veltrane/foundation/xexception.h" ] || fail "the headers are not in their folders"
libraries=$(dirname "$(find "$prefix" -name libveltrane_base.so.1)")
[ -L "$libraries/libveltrane_base.so" ] && [ -L "$libraries/libveltrane_base.so.1" ] ||
    fail "the links to the library are missing"
[ -f "$(find "$prefix/share/doc" -name README.md)" ] || fail "the documents are missing"

host=$prefix/bin/veltrane
loaded=$(env -u LD_LIBRARY_PATH ldd "$host" | sed -n 's/.*libveltrane_base.so.1 => \(.*\) (.*/\1/p')
[ "$loaded" -ef "$libraries/libveltrane_base.so.1" ] || fail "the host does not take the library beside it but $loaded"
"$host" --help </dev/null | tr -d '\r' >"$temporary/help"
expect "Synopsis: Veltrane [options] <database-name>" "$temporary/help"

cmake -S "$tests/consumer" -B "$temporary/package" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$temporary/package" >/dev/null
run_consumer "$temporary/package/consumer"
if cmake -S "$tests/consumer" -B "$temporary/later" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" -DCONSUMER_VERSION=0.9 \
    >/dev/null 2>&1; then
    fail "the package passes for another major version"
fi

export PKG_CONFIG_PATH=$libraries/pkgconfig
eval "flags=($(pkg-config --cflags --libs 'veltrane_base >= 1.0'))"
g++ -std=c++20 -I"$tests/consumer" "$tests/consumer"/*.cpp "${flags[@]}" -o "$temporary/pkgconfig"
LD_LIBRARY_PATH=$libraries run_consumer "$temporary/pkgconfig"
