#!/usr/bin/env bash
# torture/run.sh: lets every allocation of the library's work fail, with sanitizers and without, every allocation of runs
# of both programs, and every system call of runs of the host and of a change of a file.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
need_packages g++ cmake ninja-build libcli11-dev nlohmann-json3-dev libgtest-dev strace python3-minimal

for preset in release sanitize; do
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" --target torture_memory veltrane >/dev/null
    printf '\n== %s\n' "$preset"
    "build/$preset/torture/torture_memory"
done
cmake --build --preset release --target torture_preload veltrane-config >/dev/null
torture/programs.py build/release # a sanitizer has its own memory
torture/calls.py build/release/veltrane # a sanitizer makes system calls of its own, which must not fail
torture/changes.py build/release/veltrane-config
