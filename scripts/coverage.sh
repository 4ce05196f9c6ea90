#!/usr/bin/env bash
# Runs the tests in the coverage build and prints how many lines and branches of veltrane/ they reach, file by file with the
# lines that they miss. Branches to exceptions that any allocation may throw are not counted, nor is what ran in child
# processes that end without leaving main. (The measuring code itself uses calls that are banned in the library.)
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
need_packages g++ cmake ninja-build libgtest-dev gcovr

cmake --preset coverage >/dev/null
cmake --build --preset coverage -- -j"$(nproc)" >/dev/null
find build/coverage -name '*.gcda' -delete
ctest --preset coverage --quiet || echo "some tests failed; the figures cover what ran"

# Output goes to regular files in the build folder: gcovr removes an output file before it writes it.
folder=build/coverage
gcovr --root . --filter veltrane/ --exclude-throw-branches --json $folder/coverage.json $folder
figures() { gcovr --root . --add-tracefile $folder/coverage.json --exclude-throw-branches "$@"; }
figures --txt
figures --print-summary --txt $folder/lines.txt
