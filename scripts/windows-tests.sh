#!/usr/bin/env bash
# Builds the Windows programs and their tests with the cross compiler and runs the tests under Wine.
#   scripts/windows-tests.sh [ctest arguments...]      e.g. -R registry
# The build folder is build-windows; PAPERLARK_WINDOWS_JOBS sets the parallelism (default: cores).
# One Wine prefix serves the whole run: it is made fresh in the build folder, its server is kept
# alive for the run (each program then starts in a tenth of a second) and ended on the way out.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$here"
jobs=${PAPERLARK_WINDOWS_JOBS:-$(nproc)}
build=build-windows

cmake -S . -B "$build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$here/cmake/mingw-w64.cmake" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j "$jobs"

export WINEPREFIX="$here/$build/wineprefix"
export WINEDEBUG=-all
# No Mono or Gecko installers, no menu entries, and no debugger: with Wine's debugger a crashing
# test may exit with 0, or wait for a dialog to be closed.
export WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d;winemenubuilder.exe=d"
export WINEARCH=win64

cleanup() {
    wineserver -k 2>/dev/null || true
}
trap cleanup EXIT
rm -rf "$WINEPREFIX"
mkdir -p "$WINEPREFIX"
wineserver -p
wineboot -i >/dev/null 2>&1

ctest --test-dir "$build" --output-on-failure -j "$jobs" "$@" | tee "$build/ctest.log"
# How many test cases ran, for the summary of scripts/test.sh.
sed -n 's/.* tests failed out of \([0-9]*\)$/\1/p' "$build/ctest.log" > "$build/test-count.txt"
