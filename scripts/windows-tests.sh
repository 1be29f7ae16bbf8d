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

# The GUI tests draw real windows: one virtual display for the whole run, started before the Wine
# server and ended after it (a program whose display goes away dies).
xvfb_pid=""
cleanup() {
    wineserver -k 2>/dev/null || true
    if [ -n "$xvfb_pid" ]; then kill "$xvfb_pid" 2>/dev/null || true; fi
}
trap cleanup EXIT
display=:$((90 + RANDOM % 400))
Xvfb "$display" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
xvfb_pid=$!
export DISPLAY="$display"
rm -rf "$WINEPREFIX"
mkdir -p "$WINEPREFIX"
wineserver -p
wineboot -i >/dev/null 2>&1
# The desktop process starts with the first program that uses the display and would keep that
# test's output open for as long as it runs (CTest then waits for it): start it here, outside the tests.
wine rundll32.exe user32.dll,GetDesktopWindow >/dev/null 2>&1 || true
# Wine's desktop process ends shortly after its last window and takes seconds to come back; one
# hidden window keeps it up, so that each GUI test starts plAssist.exe at once.
keeper="$build/tests/ui/win32/desktop_keeper.exe"
if [ -f "$keeper" ]; then wine "$keeper" >/dev/null 2>&1 & fi

ctest --test-dir "$build" --output-on-failure -j "$jobs" "$@" | tee "$build/ctest.log"
# How many test cases ran, for the summary of scripts/test.sh.
sed -n 's/.* tests failed out of \([0-9]*\)$/\1/p' "$build/ctest.log" > "$build/test-count.txt"
