#!/usr/bin/env bash
# Runs each command line of veltrane-config that README.md shows, and compares what it prints.
# Usage: readme.sh SOURCE_FOLDER PROGRAM
set -euo pipefail
cd "$1"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
sed -n '/^<!-- config-output -->$/{n; :line; n; /^```$/q; p; b line}' README.md >"$work/shown"
grep -q '^\$ veltrane-config show' "$work/shown" || { echo "README.md shows no command"; exit 1; }
. examples/config/environment.sh
mkdir "$work/Out"
export VORNAK_DRIVES="D=$work"
veltrane-config() { "$program" "$@"; }
program=$2
{ grep '^\$ ' "$work/shown" || true; } | cut -c 3- | while IFS= read -r line; do
    printf '$ %s\n' "$line"
    eval "$line" || true
done >"$work/printed" 2>&1
diff "$work/shown" "$work/printed"
[ -z "$(ls "$work/Out")" ] || { echo "something was created"; exit 1; }
