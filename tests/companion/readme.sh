#!/usr/bin/env bash
# Runs each command line of veltrane-config that README.md shows, and compares what it prints.
# Usage: readme.sh SOURCE_FOLDER PROGRAM
set -euo pipefail
cd "$1"
program=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
shown=$(sed -n '/^<!-- config-output -->$/{n; :line; n; /^```$/q; p; b line}' README.md)
. examples/config/environment.sh
mkdir "$work/Out"
export VORNAK_DRIVES="D=$work"
veltrane-config() { "$program" "$@"; }
diff <(echo "$shown") <(sed -n 's/^\$ //p' <<<"${shown:?README.md shows no command}" | while IFS= read -r line; do
    printf '$ %s\n' "$line"
    eval "$line" || true
done 2>&1)
[ -z "$(ls "$work/Out")" ] || { echo "something was created"; exit 1; }
