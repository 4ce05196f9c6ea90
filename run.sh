#!/usr/bin/env bash
# Builds the host and shows it at work on the configuration of examples/config.
set -euo pipefail
cd "$(dirname "$0")"
. cmake/packages.sh
need_packages g++ cmake ninja-build
cmake -S . -B build/run -G Ninja -DCMAKE_BUILD_TYPE=Release -DVELTRANE_BUILD_TESTS=OFF >/dev/null
cmake --build build/run -- -j"$(nproc)"
