#!/usr/bin/env bash
# The source folder works inside another project, which gets none of its warnings and tests, and installs only the
# library beside its own program.
# Usage: subdirectory.sh SOURCE_FOLDER
. "$(dirname "$0")/common.sh"

build=$temporary/build
cmake -S "$tests/consumer" -B "$build" -G Ninja -DCONSUMER_SUBDIRECTORY="$1" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_CXX_FLAGS=-O0 >/dev/null
cmake --build "$build" --target consumer owntool owntool_documents -- -j2 >"$temporary/log" || fail "$(tail -n 30 "$temporary/log")"
run_consumer "$build/consumer"
run_tool "$build/owntool/owntool"
[ ! -f "$build/owntool/owntool-config" ] || run_config "$build/owntool/owntool-config"  # needs packages that not all have

cmake --install "$build" --prefix "$temporary/prefix" >/dev/null
(cd "$temporary/prefix" && find . ! -type d | grep -v '/libveltrane_base\.so\.1[.0]*$') >"$temporary/installed" || true
[ "$(cat "$temporary/installed")" = ./bin/consumer ] || fail "installed too: $(cat "$temporary/installed")"
rm -r "$build/veltrane"
run_consumer "$temporary/prefix/bin/consumer"
for target in veltrane veltrane_tests docs package; do
    ! ninja -C "$build" -t query "$target" >/dev/null 2>&1 || fail "the project gets the target $target"
done
