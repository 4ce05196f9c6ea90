#!/usr/bin/env bash
# No call that lets a text decide how much memory is read or written: neither in the sources nor in the library's imports.
# Usage: banned_calls.sh SOURCE_FOLDER LIBRARY
set -euo pipefail
cd "$1"
banned='\b(v?f?w?s?w?scanf(_s)?|v?sn?w?printf(_s)?|v?swprintf(_s)?|wcscpy(_s)?|wcsncpy|wcscat|wcsncat|strcpy|strcat|alloca)\b'
if grep -rnE "$banned *\(" veltrane host companion describe; then
    echo "banned calls in the sources"
    exit 1
fi
if nm -D --undefined-only "$2" | sed 's/@.*//' | grep -E " (__)?${banned//\\b/}(_chk)?\$"; then
    echo "banned calls in the library"
    exit 1
fi
