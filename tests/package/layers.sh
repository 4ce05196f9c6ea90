#!/usr/bin/env bash
# Includes point downwards only, the system's own headers are known to the platform layer alone, and what is installed
# includes nothing that is not.
# Usage: layers.sh SOURCE_FOLDER
. "$(dirname "$0")/common.sh"
cd "$1"

# A line for each include: file, what is included with its brackets.
find src host -name '*.h' -o -name '*.cpp' | sort >"$temporary/files"
[ "$(wc -l <"$temporary/files")" -ge 50 ] || fail "where are the sources?"
xargs awk 'match($0, /^[ \t]*#[ \t]*include[ \t]*["<][^">]*[">]/) {
    sub(/^[ \t]*#[ \t]*include[ \t]*/, "")
    print FILENAME, substr($0, 1, 1 + match(substr($0, 2), /[">]/))
}' <"$temporary/files" >"$temporary/includes"

awk '
BEGIN {
    split("platform foundation collections config options logging host", order)
    for (number in order) level[order[number]] = number
}
function wrong(what) { print $1 ": " $2 ": " what; failed = 1 }
{
    split($1, path, "/")
    own = path[1] == "host" ? "host" : path[2]
    target = $2
    gsub(/[<>"]/, "", target)
    split(target, parts, "/")
    if (!(own in level)) wrong("a folder that is no layer")
    if ($2 ~ /^</) {
        if (target ~ /\.h$/ && own != "platform") wrong("a header of the system above the platform layer")
        next
    }
    if (own == "host" && target !~ /\//) next
    if (!(parts[1] in level)) { wrong("not named from the layer on"); next }
    if (level[parts[1]] > level[own]) wrong("points upwards")
    if (target ~ /\/detail\// && (own == "host" || ($1 ~ /\.h$/ && $1 !~ /\/detail\//))) wrong("a header that is not installed")
}
END { exit failed }' "$temporary/includes" || fail "includes that break the layers"
