#!/usr/bin/env bash
# Builds everything, tests included, the ways that users build, runs the tests, and prints a table with a row for each.
# Exit code 1 when a row warns or fails.
# Usage: scripts/matrix.sh            all rows (some 40 minutes on two cores)
#        scripts/matrix.sh --fast     the row that differs most from the presets and has no tests; test.sh runs it
#        scripts/matrix.sh ROW...     rows by name
set -uo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

# Name, compiler, and what is added to cmake.
readonly TYPES=(None Debug Release RelWithDebInfo MinSizeRel)
rows() {
    local type
    for type in "${TYPES[@]}"; do
        echo "gcc20-$type g++ -DCMAKE_BUILD_TYPE=${type/None/}"
        echo "gcc23-$type g++ -DCMAKE_BUILD_TYPE=${type/None/} -DCMAKE_CXX_STANDARD=23"
        echo "clang20-$type clang++ -DCMAKE_BUILD_TYPE=${type/None/}"
        echo "clang23-$type clang++ -DCMAKE_BUILD_TYPE=${type/None/} -DCMAKE_CXX_STANDARD=23"
    done
    cat <<'ROWS'
gcc-plain g++ -DCMAKE_CXX_EXTENSIONS=OFF
clang-plain clang++ -DCMAKE_CXX_EXTENSIONS=OFF
gcc-lto g++ -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS=-flto=auto
clang-lto clang++ -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS=-flto
gcc-assertions g++ -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS=-D_GLIBCXX_ASSERTIONS
gcc-containers g++ -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS=-D_GLIBCXX_DEBUG
gcc-library g++ -DBUILD_TESTING=OFF
clang-library clang++ -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 -DBUILD_TESTING=OFF -DBUILD_SHARED_LIBS=OFF -DCMAKE_CXX_EXTENSIONS=OFF
gcc-static g++ -DBUILD_SHARED_LIBS=OFF -DCMAKE_BUILD_TYPE=MinSizeRel
clang-static clang++ -DBUILD_SHARED_LIBS=OFF -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_EXTENSIONS=OFF
gcc-static-all g++ -DBUILD_SHARED_LIBS=OFF -DCMAKE_BUILD_TYPE=Release -DCMAKE_EXE_LINKER_FLAGS=-static
gcc-sanitize g++ -DCMAKE_BUILD_TYPE=Debug -DVELTRANE_SANITIZE=ON
clang19 clang++-19 -DCMAKE_BUILD_TYPE=Release
clang19-libc++ clang++-19 -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS=-stdlib=libc++
ROWS
}
readonly FAST=(clang-library)

# GoogleTest with the row's own C++ library, where the system's package does not fit. Prints its prefix.
googletest_for() {
    local prefix=$PWD/build/matrix/googletest-$1
    [ -d "$prefix" ] && { echo "$prefix"; return; }
    cmake -S /usr/src/googletest -B "$prefix-build" -G Ninja "${@:2}" -DCMAKE_INSTALL_PREFIX="$prefix" \
        -DBUILD_GMOCK=OFF >/dev/null && cmake --build "$prefix-build" --target install >/dev/null && echo "$prefix"
}

failed=0
# run_row NAME COMPILER OPTION...: one line of the table; the log stays in build/matrix/NAME.log.
run_row() {
    local name=$1 folder=build/matrix/$1 log=build/matrix/$1.log tests="not built" begin=$SECONDS
    # In groups, which halves the time; the fast row without them and precompiled headers, so that a missing #include fails.
    local groups=(-DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=12)
    [[ "${FAST[*]}" == *"$name"* ]] && groups=(-DVELTRANE_PRECOMPILE=OFF)
    local options=(-DCMAKE_CXX_COMPILER="$2" -DVELTRANE_BUILD_TESTS=ON "${groups[@]}" "${@:3}")
    local library=libstdc++
    [[ "$*" == *libc++* ]] && library=libc++
    if [ "$library" = libc++ ]; then
        options+=(-DCMAKE_PREFIX_PATH="$(googletest_for "$name" -DCMAKE_CXX_COMPILER="$2" "${@:3}")")
    fi
    mkdir -p "$folder"
    if cmake -S . -B "$folder" -G Ninja "${options[@]}" >"$log" 2>&1 && cmake --build "$folder" -- -k 0 >>"$log" 2>&1; then
        if [ -x "$folder/tests/veltrane_tests" ]; then
            "$folder/tests/veltrane_tests" --gtest_brief=1 >>"$log" 2>&1 && tests=passed || tests=FAILED
        fi
    else
        tests="DOES NOT BUILD"
    fi
    local warnings
    warnings=$(grep -cE "(warning|Warning):" "$log")
    # The C library warns of dlopen in every program that is linked statically as a whole.
    [[ "$*" == *-static* ]] && warnings=$(grep -E "(warning|Warning):" "$log" | grep -cv "statically linked applications")
    [ "$warnings" = 0 ] && [[ "$tests" == passed || "$tests" == "not built" ]] || failed=1
    printf '%-22s %-42s %8s  %-14s %4s s\n' "$name" "$2 ${*:3}" "$warnings" "$tests" $((SECONDS - begin)) |
        sed 's/ -DCMAKE_/ /g; s/ -DVELTRANE_/ /g; s/ -D/ /g; s/=-D/=/g'
}

wanted=("$@")
[ "${1:-}" = --fast ] && wanted=("${FAST[@]}")
[ $# -gt 0 ] || mapfile -t wanted < <(rows | cut -d' ' -f1)
[ "${1:-}" = --fast ] || need_packages g++ cmake ninja-build libgtest-dev libcli11-dev nlohmann-json3-dev clang clang-19 \
    libc++-19-dev libc++abi-19-dev lld python3
printf '%-22s %-42s %8s  %-14s %6s\n' row "built with" warnings tests time
for name in "${wanted[@]}"; do
    read -ra words < <(rows | awk -v name="$name" '$1 == name')
    [ ${#words[@]} -gt 0 ] || { echo "no row $name"; exit 2; }
    run_row "${words[@]}"
done
exit $failed
