#!/usr/bin/env bash
# Runs every benchmark and prints one table: work, floor, ratio, bar, held or not; then the start of a process.
# Exit code 1 when a bar is not held. Needs a quiet machine.
# Usage: bench/run.sh [PAIRS]       pairs of starts that are timed, 200 if not given
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
need_packages g++ cmake ninja-build libgtest-dev libbenchmark-dev libinih-dev libcli11-dev nlohmann-json3-dev \
    pkg-config python3-minimal valgrind time

cmake --preset release >/dev/null
cmake --build --preset release >/dev/null
cmake -S . -B build/bench-static -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE=-O2 -DBUILD_SHARED_LIBS=OFF \
    -DCMAKE_EXE_LINKER_FLAGS=-static -DVELTRANE_BUILD_BENCH=ON -DVELTRANE_BUILD_TESTS=OFF >/dev/null
cmake --build build/bench-static --target startup_store >/dev/null 2>&1

status=0
printf 'processor: %s\n\n' "$(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1)"
python3 bench/table.py build/release || status=1
python3 bench/startup/run.py build/release "${1:-200}" build/bench-static || status=1
python3 bench/startup/scale.py build/release "$((${1:-200} / 2))" || status=1
python3 bench/startup/lint.py build/release "$((${1:-200} / 2))" || status=1
exit $status
