#!/usr/bin/env bash
# Runs the tests in the coverage build and prints how many lines and branches of src/ they reach, file by file with the
# lines that they miss. Branches to exceptions that any allocation may throw are not counted, nor is what ran in child
# processes that end without leaving main. (The measuring code itself uses calls that are banned in the library.)
set -euo pipefail
cd "$(dirname "$0")/.."
. cmake/packages.sh
need_packages g++ cmake ninja-build libgtest-dev gcovr

cmake --preset coverage >/dev/null
cmake --build --preset coverage -- -j"$(nproc)" >/dev/null
find build/coverage -name '*.gcda' -delete
ctest --preset coverage --quiet || echo "some tests failed; the figures are of what ran"

report() { gcovr --root . --filter src/ --exclude-throw-branches --gcov-ignore-parse-errors build/coverage "$@"; }
report --json build/coverage/coverage.json
figures() { gcovr --root . --add-tracefile build/coverage/coverage.json --exclude-throw-branches "$@"; }
figures --txt
figures --branches --txt | tail -n 3
figures --print-summary --txt /dev/null
