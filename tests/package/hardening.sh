#!/usr/bin/env bash
# Library and host are built so that a fault is hard to exploit: what the loader writes is read-only afterwards, addresses
# vary, the stack is not executable, and writes are checked.
# Usage: hardening.sh LIBRARY HOST
. "$(dirname "$0")/common.sh"

for file in "$@"; do
    readelf -lW "$file" >"$temporary/segments"
    readelf -dW "$file" >"$temporary/dynamic"
    grep -q 'GNU_RELRO' "$temporary/segments" || fail "$file: no RELRO"
    grep -qE '\(FLAGS(_1)?\).*(BIND_)?NOW' "$temporary/dynamic" || fail "$file: symbols are bound late"
    grep -qE 'GNU_STACK.* RW  *0x' "$temporary/segments" || fail "$file: the stack is executable"
    ! grep -qE 'LOAD.* RWE ' "$temporary/segments" || fail "$file: a segment is writable and executable"
    ! grep -q '(TEXTREL)' "$temporary/dynamic" || fail "$file: the code is relocated"
    ! grep -qE 'R(UN)?PATH.*(\[:|::|:\])' "$temporary/dynamic" || fail "$file: the loader looks into the current folder"
    readelf -hW "$file" | grep -q 'Type: *DYN' || fail "$file: not position independent"
done
readelf -dW "$2" | grep -q 'FLAGS_1.*PIE' || fail "$2: no PIE"
readelf -dW "$1" | grep -qF 'Library soname: [libveltrane_base.so.1]' || fail "$1: no versioned soname"
nm -D --undefined-only "$1" >"$temporary/imports"
grep -q ' __stack_chk_fail' "$temporary/imports" || fail "$1: no stack protector"
grep -q ' __[a-z]*_chk@' "$temporary/imports" || fail "$1: no fortified call"
