#!/usr/bin/env bash
# The library exports exactly what cmake/exported-symbols.txt lists: a removed symbol breaks programs that were linked
# before, a new one is a promise. After an intended change, --update writes the list.
# Usage: exports.sh LIBRARY [--update]
. "$(dirname "$0")/common.sh"

list=$tests/../../cmake/exported-symbols.txt
nm -D --defined-only "$1" >"$temporary/symbols"
! grep ' u ' "$temporary/symbols" || fail "unique symbols keep the library loaded when it is closed"
! c++filt <"$temporary/symbols" | grep -E '^[0-9a-f]+ [A-Za-z] ((typeinfo|typeinfo name|vtable|guard variable) for )?(std|__gnu_cxx)::' ||
    fail "instances of standard templates are exported"
awk '{print $3}' "$temporary/symbols" | LC_ALL=C sort >"$temporary/names"
if [ "${2:-}" = --update ]; then
    cp "$temporary/names" "$list"
    exit
fi
for class in XException XFileException CFileException XLogging; do
    grep -qxF "_ZTI${#class}$class" "$temporary/names" || fail "errors of type $class cannot be caught outside"
done
diff "$list" "$temporary/names" | c++filt ||
    fail "the exports have changed; when that is meant: tests/package/exports.sh $1 --update"
