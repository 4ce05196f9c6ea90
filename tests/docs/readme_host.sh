#!/usr/bin/env bash
# Runs the host of README.md with the command line that stands there and compares what it prints.
# Usage: readme_host.sh SOURCE_FOLDER HOST
set -euo pipefail
cd "$1"
arguments=$(sed -n 's/^With `\(.*\)` on its command line it prints$/\1/p' README.md)
expected=$(sed -n '/^<!-- readme-output -->$/{n; :line; n; /^```$/q; p; b line}' README.md)
[ -n "$arguments" ] && [ -n "$expected" ] || {
    echo "README.md has no command line or no output"
    exit 1
}
unset data metadata VELTRANE_SUMMARY VORNAK_DRIVES
export VORNAK_REGISTRY=/dev/null
printed=$(eval "\"\$2\" $arguments")
diff <(echo "$expected") <(echo "$printed")
