#!/usr/bin/env bash
# Builds the host and shows it at work on the configuration of examples/config.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/packages.sh
need_packages g++ cmake ninja-build libcli11-dev nlohmann-json3-dev
cmake -S . -B build/run -G Ninja -DCMAKE_BUILD_TYPE=Release -DVELTRANE_BUILD_TESTS=OFF -DCMAKE_UNITY_BUILD=ON >/dev/null
cmake --build build/run -- -j"$(nproc)"

. examples/config/environment.sh
mkdir -p build/run/Out
veltrane() {
    printf '\n$ veltrane %s\n' "$*"
    build/run/veltrane --metadata "$PWD/examples/config/metadata" --config "$PWD/examples/config/user" -i team.ini "$@" ||
        printf '(exit code %s)\n' "$?"
}

veltrane base --summary
veltrane base -l examples/config/lists/base-v4.txt -l examples/config/lists/base-v5.txt -d -c change.txt
veltrane --logfil other.log
veltrane -q -cv maybe
configuration=examples/config
veltrane_config() {
    printf '\n$ veltrane-config %s -- base -i team.ini\n' "$*"
    build/run/veltrane-config "$@" -- --metadata "$PWD/$configuration/metadata" --config "$PWD/$configuration/user" base -i team.ini ||
        printf '(exit code %s)\n' "$?"
}
veltrane_config show logfile quiet
veltrane_config lint
configuration=build/run/config # a copy, which may be changed
rm -rf "$configuration"
cp -r examples/config "$configuration"
veltrane_config set logfile run.log
veltrane_config set role READER
veltrane_config unset logfile
printf '\nThe log of the last run that got far enough to open it:\n\n'
tr -d '\r' <build/run/Out/log/base-team.log
