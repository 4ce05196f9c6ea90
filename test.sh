#!/usr/bin/env bash
# Builds with and without sanitizers, runs the tests in both, and checks format and clang-tidy. Ends with the closing
# lines of the test runner.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/packages.sh
need_packages g++ cmake ninja-build libgtest-dev libbenchmark-dev libcli11-dev nlohmann-json3-dev clang clang-format \
    clang-tidy python3 binutils groff-base man-db zsh fish bsdutils neovim doxygen dpkg-dev file pkg-config lintian strace

step() { printf '\n== %s\n' "$*"; }

step "format"
git ls-files --cached --others --exclude-standard '*.h' '*.cpp' | xargs clang-format --dry-run --Werror

for preset in release sanitize; do
    step "build $preset"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" -- -j"$(nproc)"
done

step "clang-tidy"
scripts/tidy.sh

step "other ways to build"
scripts/matrix.sh --fast

step "test threads"
cmake --preset thread >/dev/null
cmake --build --preset thread -- -j"$(nproc)"
build/thread/tests/veltrane_thread_tests --gtest_brief=1

for preset in sanitize release; do
    step "test $preset"
    ctest --preset "$preset" --quiet --output-log "build/$preset/ctest.log" || {
        cat "build/$preset/ctest.log"
        exit 1
    }
    sed -n '/% tests passed/,$p' "build/$preset/ctest.log"
done
