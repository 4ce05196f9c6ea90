# Sourced by the tests of this folder: a temporary folder that is removed at the end, and how a test fails.
set -euo pipefail
export LC_ALL=C.UTF-8
tests=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
temporary=$(mktemp -d)
trap 'rm -rf "$temporary"' EXIT

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}

# expect TEXT FILE: the file holds that line.
expect() {
    grep -qxF -- "$1" "$2" || fail "\"$1\" is not among: $(cat "$2")"
}

# run_consumer PROGRAM: the outside program sees the library at work.
run_consumer() {
    "$1" >"$temporary/consumer.out" || fail "$1 ended with $?"
    diff "$tests/consumer/expected.txt" "$temporary/consumer.out" || fail "$1 prints something else"
}
