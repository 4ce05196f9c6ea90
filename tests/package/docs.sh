#!/usr/bin/env bash
# The API reference is written without a warning, and the comment of each public class has a description and an example.
# Usage: docs.sh BUILD_FOLDER
. "$(dirname "$0")/common.sh"

cmake --build "$1" --target docs >"$temporary/log" 2>&1 || fail "$(cat "$temporary/log")"
[ -f "$1/docs/html/index.html" ] || fail "no reference was written"

cd "$1/docs/xml"
for class in class*.xml; do
    # The comment of the class itself, not those of its members, is indented by four.
    sed -n '/^    <briefdescription>/,/^    <location/p' "$class" >"$temporary/comment"
    grep -q '<para>' "$temporary/comment" || echo "$class: no purpose"
    grep -q '<programlisting' "$temporary/comment" || echo "$class: no example"
done >"$temporary/missing"
[ ! -s "$temporary/missing" ] || fail "$(cat "$temporary/missing")"
