#!/usr/bin/env bash
# Each line that a page quotes below "<!-- FILE -->" is in that file.
# Usage: quoted_code.sh SOURCE_FOLDER PAGE
set -euo pipefail
cd "$1"
count=0
while read -r file; do
    quoted=$(sed -n "\\|^<!-- $file -->\$|,/^\`\`\`\$/{/^<!--/d; /^\`\`\`/d; p}" "$2")
    [[ -n $quoted && $(cat "$file") == *"$quoted"* ]] || { echo "$2 quotes something else than $file"; exit 1; }
    count=$((count + 1))
done < <(sed -n 's/^<!-- \(.*\) -->$/\1/p' "$2")
[ "$count" -ge 3 ]
