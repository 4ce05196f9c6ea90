#!/usr/bin/env bash
# clang-tidy on library, host, companion and describe. The standard headers take most of its time, so the sources go
# through it in groups (preset tidy). Two that use one name for different things in their unnamed namespaces cannot
# be in one group: rename one, or give it SKIP_UNITY_BUILD_INCLUSION.
# By hand for one file: clang-tidy -p build/debug FILE
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset tidy >/dev/null
# The files of the groups only include their sources. The companion's, which take longest, come last in the list.
sed -n 's/^  "file": "\(.*\)".*/\1/p' build/tidy/compile_commands.json | tac |
    xargs -P "$(nproc)" -n 1 clang-tidy -p build/tidy --quiet --line-filter='[{"name": ".cpp"}, {"name": ".h"}]' 2>/dev/null

# In a group, a use of a name in one file hides an unused 'using' in another.
git ls-files --cached --others --exclude-standard {veltrane,host,companion,describe}'/*.cpp' | while read -r file; do
    sed -n 's/^ *using [A-Za-z_:]*::\([A-Za-z_]*\);.*/\1/p' "$file" | while read -r name; do
        [ "$(grep -cw "$name" "$file")" -gt 1 ] || { echo "$file: unused 'using' of $name"; exit 1; }
    done
done
