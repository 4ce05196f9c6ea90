#!/usr/bin/env bash
# Builds for aarch64 with Debian's cross compiler and runs all tests under user-mode emulation. Wide text has unsigned
# elements there. proot starts the child processes of the tests under the emulator too, whatever the kernel is set up for.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
need_packages cmake ninja-build g++-aarch64-linux-gnu googletest qemu-user proot

folder=$PWD/build/aarch64
emulator="qemu-aarch64 -L /usr/aarch64-linux-gnu"
target=(-G Ninja -DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR=aarch64 -DCMAKE_BUILD_TYPE=Release
    -DCMAKE_CXX_COMPILER=aarch64-linux-gnu-g++ -DCMAKE_FIND_ROOT_PATH="$folder/googletest")

if [ ! -d "$folder/googletest" ]; then
    cmake -S /usr/src/googletest -B "$folder/googletest-build" "${target[@]}" -DBUILD_GMOCK=OFF \
        -DCMAKE_C_COMPILER=aarch64-linux-gnu-gcc -DCMAKE_INSTALL_PREFIX="$folder/googletest" >/dev/null
    cmake --build "$folder/googletest-build" --target install >/dev/null
fi
cmake -S . -B "$folder" "${target[@]}" -DCMAKE_COMPILE_WARNING_AS_ERROR=ON -DVELTRANE_BUILD_TESTS=ON \
    -DCMAKE_CROSSCOMPILING_EMULATOR="${emulator// /;}" >/dev/null
cmake --build "$folder" >"$folder/build.log" || { cat "$folder/build.log"; exit 1; }

emulated() { proot -q "$emulator" "$@"; }
emulated "$folder/tests/veltrane_tests" --gtest_brief=1
for replay in "$folder"/fuzz/*_replay; do
    harness=$(basename "$replay" _replay)
    emulated "$replay" "fuzz/corpus/$harness" "fuzz/crashers/$harness" >"$folder/replay.log" ||
        { cat "$folder/replay.log"; exit 1; }
    echo "$harness: $(tail -n 1 "$folder/replay.log")"
done
