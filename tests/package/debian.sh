#!/usr/bin/env bash
# The Debian packages pass lintian and have the right dependencies, and the host's first run works in a root with only
# them and the system's libraries.
# Usage: debian.sh BUILD_FOLDER
. "$(dirname "$0")/common.sh"

cd "$1"
cpack -B "$temporary/packages" >"$temporary/log" 2>&1 || fail "$(tail -n 30 "$temporary/log")"
deb() { echo "$temporary/packages/$1"_*.deb; }
field() { dpkg-deb -f "$(deb "$1")" "$2"; }
depends() { field "$1" Depends | tr ',' '\n' | sed 's/^ *//' >"$temporary/depends"; }

[ "$(ls "$temporary/packages"/*.deb | wc -l)" = 3 ] || fail "not three packages: $(ls "$temporary/packages")"
for package in libveltrane-base1 libveltrane-base-dev veltrane; do
    [ "$(field "$package" Package)" = "$package" ] || fail "no package $package"
done
[ "$(ls "$temporary/packages"/*-dbgsym_*.ddeb | wc -l)" = 2 ] || fail "no debug symbols: $(ls "$temporary/packages")"
lintian --allow-root --fail-on error,warning "$temporary/packages"/*.d*eb >"$temporary/lintian" 2>&1 || fail "$(cat "$temporary/lintian")"
version=$(field libveltrane-base1 Version)

depends libveltrane-base1
for system in libc6 libstdc++6 libgcc-s1; do
    grep -q "^$system (>= " "$temporary/depends" || fail "libveltrane-base1 does not need $system"
done
! grep -q veltrane "$temporary/depends" || fail "libveltrane-base1 needs one of the others"
depends libveltrane-base-dev
expect "libveltrane-base1 (= $version)" "$temporary/depends"
depends veltrane
expect "libveltrane-base1 (>= $version)" "$temporary/depends"
grep -q '^libc6 (>= ' "$temporary/depends" || fail "veltrane does not need libc6"
dpkg-deb -I "$(deb libveltrane-base1)" shlibs >"$temporary/shlibs"
grep -q '^libveltrane_base 1 libveltrane-base1' "$temporary/shlibs" || fail "shlibs: $(cat "$temporary/shlibs")"
dpkg-deb -I "$(deb libveltrane-base1)" symbols >"$temporary/symbols"
grep -q '^ _ZN7XOption10InitializeE.*@Base 1\.0\.0$' "$temporary/symbols" || fail "symbols: $(head "$temporary/symbols")"

root=$temporary/root
mkdir "$root"
for package in libveltrane-base1 veltrane; do dpkg-deb -x "$(deb "$package")" "$root"; done
[ ! -e "$root/usr/include" ] && [ -z "$(find "$root" -name '*.so')" ] || fail "development files in the run-time packages"
dpkg-deb -x "$(deb libveltrane-base-dev)" "$root"
[ -f "$root/usr/include/veltrane/platform/text/cstring.h" ] || fail "no headers in libveltrane-base-dev"
[ -e "$(readlink -f "$(find "$root" -name libveltrane_base.so)")" ] || fail "libveltrane_base.so leads nowhere"

ldd "$root/usr/bin/veltrane" | grep -oE '/[^ ]+' | grep -vF "$root" | while read -r file; do
    mkdir -p "$root$(dirname "$file")"
    cp -L "$file" "$root$file"
done
# Changing the root needs rights that not everyone has; then the library of the packages is used in the real root.
mkdir "$root/proc"
in_root=(env -i PATH="$PATH" unshare --mount --pid --fork --mount-proc="$root/proc" chroot "$root")
first=(--metadata /usr/share/veltrane/config/metadata base --summary)
if (cd / && "${in_root[@]}" /usr/bin/veltrane "${first[@]}") </dev/null >"$temporary/summary" 2>"$temporary/errors"; then
    echo "ran in a root of its own"
elif grep -qE '^(unshare|chroot):' "$temporary/errors"; then
    libraries=$(dirname "$(find "$root" -name libveltrane_base.so.1)")
    (cd "$root" && env -i LD_LIBRARY_PATH="$libraries" "$root/usr/bin/veltrane" "${first[@]/#\/usr/$root/usr}") \
        </dev/null >"$temporary/summary"
else
    fail "the host does not run: $(cat "$temporary/errors")"
fi
grep -q '^dictionary-name.*BASE' "$temporary/summary" || fail "no value of the sample: $(cat "$temporary/summary")"
