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

# expect TEXT FILE: the file has that line.
expect() {
    grep -qxF -- "$1" "$2" || fail "\"$1\" is not among: $(cat "$2")"
}

# run_consumer PROGRAM: a program outside of the project uses the library.
run_consumer() {
    "$1" >"$temporary/consumer.out" || fail "$1 ended with $?"
    diff "$tests/consumer/expected.txt" "$temporary/consumer.out" || fail "$1 prints something else"
}

# message BODY: a message as an editor sends it; @ stands for a document.
message() {
    local body=${1//@/\"uri\":\"file:///owntool.ini\"}
    printf 'Content-Length: %d\r\n\r\n{"jsonrpc":"2.0",%s}' $((${#body} + 18)) "$body"
}

# run_editor PROGRAM: its server for editors knows the options of the tool.
run_editor() {
    {
        message '"id":1,"method":"initialize","params":{}'
        message '"method":"textDocument/didOpen","params":{"textDocument":{@,"text":"[ROOT]\nname=b\n[SCALE]\nround=x\nuint=cm\n"}}'
        message '"id":2,"method":"textDocument/codeAction","params":{"textDocument":{@},"range":{"start":{"line":0,"character":0},"end":{"line":9,"character":0}}}'
        message '"id":3,"method":"textDocument/completion","params":{"textDocument":{@},"position":{"line":5,"character":0}}'
        message '"id":4,"method":"shutdown"'
        message '"method":"exit"'
    } | "$1" lsp >"$temporary/out" || fail "$1 lsp ended with $?"
    for text in "did you mean 'unit'?" 'round is taken as auto' '"newText":"dry-run = "' '"newText":"source-1 = "'; do
        grep -qF -- "$text" "$temporary/out" || fail "$1 lsp does not say: $text, but $(cat "$temporary/out")"
    done
}

# run_config PROGRAM: the companion of that tool knows its options, and its documents name no others.
run_config() {
    "$1" show -- -m "$tests/../../examples/owntool/metadata" >"$temporary/out" || fail "$1 ended with $?: $(cat "$temporary/out")"
    grep -qE '^unit +cm ' "$temporary/out" || fail "$1 shows something else: $(cat "$temporary/out")"
    cp -r "$tests/../../examples/owntool/metadata" "$temporary/changed"
    "$1" set unit mm -- -m "$temporary/changed" | grep -qE ':[0-9]+ \[SCALE\]: unit = cm -> mm$' || fail "$1 sets no unit"
    run_editor "$1"
    ! "$1" names 2>"$temporary/errors" || fail "$1 changes names without naming rules"
    for page in man/man1/owntool.1 man/man5/owntool.ini.5 bash-completion/completions/owntool \
        zsh/vendor-completions/_owntool fish/vendor_completions.d/owntool.fish; do
        page=$(dirname "$1")/share/$page
        grep -q 'dry.*run' "$page" || fail "$page does not name the tool's options"
        ! grep -iE '@[a-z]*@|autodoc|change ?file|naming rule|obsolete|Veltrane' "$page" || fail "$page tells too much"
    done
    ! grep -F '\fBnames\fR' "$(dirname "$1")/share/man/man1/owntool-config.1" || fail "the page of $1 tells too much"
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
    ! grep -E 'Veltrane|create-autodoc|commands:' "$temporary/help" || fail "the help shows what the tool leaves out"
    ! "$1" base --create-autodoc 2>"$temporary/errors" || fail "an option that is left out is known"
    grep -qF 'command line option <--create-autodoc> not recognized!' "$temporary/errors" || fail "$(cat "$temporary/errors")"
}
