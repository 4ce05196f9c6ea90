#!/usr/bin/env bash
# Includes point downwards only, only the platform layer includes headers of the system, and installed headers include
# only installed ones.
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
    level["platform"] = 0                                  # the base of every layer
}
function wrong(what) { print $1 ": " $2 ": " what; failed = 1 }
# The layer of a file, by its path below the source folder.
function layer(file, parts) {
    split(file, parts, "/")
    if (parts[1] != "veltrane") return parts[1]
    return parts[2] == "platform" && parts[4] != "" ? parts[2] "/" parts[3] : parts[2]
}
{
    own = layer($1)
    target = $2
    gsub(/[<>"]/, "", target)
    if (!(own in level)) wrong("is in no known layer")
    if ($2 ~ /^</) {
        # The companion writes files and reads a pipe, in one source each.
        if ($1 ~ /^companion\/(editfile|lspinput)\./) next
        if (target ~ /\.h$/ && own !~ /^platform/) wrong("a header of the system above the platform layer")
        next
    }
    if ($1 !~ /^veltrane\// && (target !~ /\// || target == "veltrane/config_tool.h")) next  # of the program itself
    if (target !~ /^veltrane\//) { wrong("not named from the root on"); next }
    other = layer(target)
    if (!(other in level)) { wrong("includes no known layer"); next }
    if (other != own && level[other] >= level[own]) wrong("points upwards")
    if (target ~ /\/detail\// && other != own) wrong("is private to another layer")
    if (target ~ /\/(detail|internal)\// && $1 ~ /^veltrane.*\.h$/ && $1 !~ /\/(detail|internal)\//)
        wrong("a header that is not installed")
}
END { exit failed }' "$temporary/includes" || fail "includes that break the layers"
