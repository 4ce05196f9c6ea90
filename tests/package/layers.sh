#!/usr/bin/env bash
# Includes point downwards only, the system's own headers are known to the platform layer alone, and what is installed
# includes nothing that is not.
# Usage: layers.sh SOURCE_FOLDER
. "$(dirname "$0")/common.sh"
cd "$1"

# A line for each include: file, what is included with its brackets.
find veltrane host companion describe -name '*.h' -o -name '*.cpp' | sort >"$temporary/files"
[ "$(wc -l <"$temporary/files")" -ge 50 ] || fail "where are the sources?"
xargs grep -HE '^[[:space:]]*#[[:space:]]*include' <"$temporary/files" |
    sed -E 's/:[^"<]*(["<][^">]*[">]).*/ \1/' >"$temporary/includes"

awk '
BEGIN {
    split("platform/text platform/files platform/sources foundation collections config options logging tool describe companion", order)
    for (number in order) level[order[number]] = number + 0
    level["platform/process"] = level["platform/sources"]  # neither knows the other
    level["host"] = level["companion"]
    level["platform"] = 0                                  # what every room stands on
}
function wrong(what) { print $1 ": " $2 ": " what; failed = 1 }
# The room of a file by its path below the source folder.
function room(file, parts) {
    split(file, parts, "/")
    if (parts[1] != "veltrane") return parts[1]
    return parts[2] == "platform" && parts[4] != "" ? parts[2] "/" parts[3] : parts[2]
}
{
    own = room($1)
    target = $2
    gsub(/[<>"]/, "", target)
    if (!(own in level)) wrong("a folder that is no room")
    if ($2 ~ /^</) {
        # The companion writes files and reads a pipe as no host does: in one file each.
        if ($1 ~ /^companion\/(editfile|lspinput)\./) next
        if (target ~ /\.h$/ && own !~ /^platform/) wrong("a header of the system above the platform layer")
        next
    }
    if ($1 !~ /^veltrane\// && (target !~ /\// || target == "veltrane/config_tool.h")) next  # of the program itself
    if (target !~ /^veltrane\//) { wrong("not named from the root on"); next }
    other = room(target)
    if (!(other in level)) { wrong("a room that is none"); next }
    if (other != own && level[other] >= level[own]) wrong("points upwards")
    if (target ~ /\/detail\// && other != own) wrong("what is private to another room")
    if (target ~ /\/(detail|internal)\// && $1 ~ /^veltrane.*\.h$/ && $1 !~ /\/(detail|internal)\//)
        wrong("a header that is not installed")
}
END { exit failed }' "$temporary/includes" || fail "includes that break the layers"
