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
ctest --preset coverage --quiet || echo "some tests failed; the figures are of what ran"

# Output files are plain ones of the build folder: gcovr removes what it is told to write before it writes.
folder=build/coverage
gcovr --root . --filter veltrane/ --exclude-throw-branches --json $folder/coverage.json $folder
figures() { gcovr --root . --add-tracefile $folder/coverage.json --exclude-throw-branches "$@"; }
figures --txt
figures --print-summary --txt $folder/lines.txt
