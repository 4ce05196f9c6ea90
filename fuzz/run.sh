#!/usr/bin/env bash
# fuzz/run.sh SECONDS [HARNESS...]: builds the harnesses under AddressSanitizer and UBSan and runs each that long, or ten
# million times if that takes less; an hour is a whole run. An input that breaks one is left in fuzz/crashers/HARNESS,
# where the tests replay it from then on.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
need_packages cmake ninja-build clang libcli11-dev nlohmann-json3-dev

seconds=${1:?usage: fuzz/run.sh SECONDS [HARNESS...]}
shift
harnesses=("$@")
if [ $# -eq 0 ]; then # every <name>_fuzz.cpp, as the build has it
    for source in fuzz/*_fuzz.cpp; do harnesses+=("$(basename "$source" _fuzz.cpp)"); done
fi

cmake --preset fuzz >/dev/null
ninja -C build/fuzz -j2 --quiet "${harnesses[@]/%/_fuzz}"

status=0
for harness in "${harnesses[@]}"; do
    found=build/fuzz/corpus/$harness
    crashers=fuzz/crashers/$harness
    mkdir -p "$found" "$crashers"
    log=build/fuzz/$harness.log
    start=$SECONDS
    "build/fuzz/fuzz/${harness}_fuzz" -max_total_time="$seconds" -runs=10000000 -max_len=4096 -timeout=10 \
        -print_final_stats=1 -artifact_prefix="$crashers/" "$found" "fuzz/corpus/$harness" >"$log" 2>&1 || status=1
    rmdir --ignore-fail-on-non-empty "$crashers" fuzz/crashers 2>/dev/null || true
    executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    if [ -n "$(ls -A "$crashers" 2>/dev/null)" ] || [ -z "$executions" ]; then
        echo "$harness: FAILED, see $log"
        status=1
    else
        echo "$harness: $executions executions in $((SECONDS - start)) s"
    fi
done
exit $status
