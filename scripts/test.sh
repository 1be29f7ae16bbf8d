#!/usr/bin/env bash
# Builds everything and runs every test: the test suite, the same suite under AddressSanitizer and
# UndefinedBehaviorSanitizer, the Windows build and its tests under Wine, and each fuzz target for a
# short time.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$here"
"$here/scripts/install-deps.sh"

jobs=$(nproc)
fuzz_seconds=${PAPERLARK_FUZZ_SECONDS:-20}

echo "== build and test"
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j "$jobs"
ctest --test-dir build --output-on-failure -j "$jobs" | tee build/ctest.log
linux_cases=$(sed -n 's/.* tests failed out of \([0-9]*\)$/\1/p' build/ctest.log)

echo "== Debian package, installed on this machine, printing through a CUPS server of its own"
sh tests/package/package_test.sh build

echo "== sanitizer build (address, undefined)"
cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DPAPERLARK_SANITIZE=address,undefined \
    -DPAPERLARK_BENCH=OFF >/dev/null
cmake --build build-asan -j "$jobs"
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 ctest --test-dir build-asan --output-on-failure -j "$jobs"

echo "== Windows build (mingw-w64) and its tests under Wine"
PAPERLARK_WINDOWS_JOBS="$jobs" "$here/scripts/windows-tests.sh"
windows_cases=$(cat build-windows/test-count.txt)

echo "== fuzz targets (${fuzz_seconds}s each)"
CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPAPERLARK_FUZZ=ON \
    -DPAPERLARK_TESTS=OFF -DPAPERLARK_BENCH=OFF >/dev/null
# Only the fuzz targets: the programs and the front-end have nothing to add in this build.
fuzzers=$(sed -n 's/^add_paperlark_fuzzer(\([a-z_]*\).*/\1/p' fuzz/CMakeLists.txt)
# shellcheck disable=SC2086
cmake --build build-fuzz -j "$jobs" --target $fuzzers
for name in $fuzzers; do
    target="build-fuzz/fuzz/$name"
    echo "-- $(basename "$target")"
    corpus="build-fuzz/corpus/$(basename "$target")"
    mkdir -p "$corpus"
    "$target" -max_total_time="$fuzz_seconds" -rss_limit_mb=2048 "$corpus" 2>&1 | tail -n 2
done
echo "test cases run: Linux ${linux_cases}, Windows ${windows_cases}"
echo "all test stages passed"
