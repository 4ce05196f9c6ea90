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

# run_tool PROGRAM: the tool of examples/owntool sees its own options in file and command line.
run_tool() {
    local words=(-m "$tests/../../examples/owntool/metadata" --dry-run -src typed.txt)
    "$1" "${words[@]}" >"$temporary/out" || fail "$1 ended with $?: $(cat "$temporary/out")"
    cat >"$temporary/expected" <<'END'
database: base (basic file:3)
team:     base-team (basic file:6)
unit:     cm (basic file:7)
rounded:  as the unit wants
source 0: typed.txt
steps:    1 5 10
nothing is done
END
    diff "$temporary/expected" "$temporary/out" || fail "$1 prints something else"
    "$1" --help </dev/null | tr -d '\r' >"$temporary/help"
    expect "Synopsis: owntool [options] <database-name>" "$temporary/help"
    grep -q 'Measure in this unit' "$temporary/help" || fail "the help does not show the tool's options"
}
