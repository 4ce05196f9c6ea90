#!/usr/bin/env bash
# torture/run.sh: fails every allocation of the library's work and every call of the system in runs of the host, once each,
# with sanitizers and without.
set -euo pipefail
cd "$(dirname "$0")/.."
. cmake/packages.sh
need_packages g++ cmake ninja-build libgtest-dev strace python3-minimal

for preset in release sanitize; do
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" --target torture_memory veltrane >/dev/null
    printf '\n== %s\n' "$preset"
    "build/$preset/torture/torture_memory"
done
torture/calls.py build/release/veltrane # a sanitizer makes calls of its own, which must not fail
