#!/usr/bin/env bash
# plAssist.exe's footprint: file size, imported DLLs, and private memory while idle under Wine next
# to a minimal Win32 tray program. Prints figures; run by hand after scripts/windows-tests.sh (or any
# cross build) has built the targets:   bench/win32-footprint.sh [build-windows] [seconds]
set -euo pipefail
build="${1:-build-windows}"
seconds="${2:-5}"
exe="$build/suite/plAssist.exe"
reference="$build/bench/win32/tray_reference.exe"
cmake --build "$build" --target footprint_win32 >/dev/null

size=$(stat -c %s "$exe")
echo "plAssist.exe     $size bytes ($((size / 1024)) KiB; aim: under 1024 KiB)"
echo "imports          $(x86_64-w64-mingw32-objdump -p "$exe" | sed -n 's/^\s*DLL Name: //p' | sort -f | tr '\n' ' ')"
echo "reference        $(stat -c %s "$reference") bytes"

export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d;winemenubuilder.exe=d"
if [ -z "${DISPLAY:-}" ]; then
    Xvfb :97 -screen 0 1024x768x24 >/dev/null 2>&1 &
    xvfb=$!
    trap 'wineserver -k 2>/dev/null || true; kill $xvfb 2>/dev/null || true' EXIT
    export DISPLAY=:97
    sleep 1
fi
wine "$build/bench/win32/footprint_win32.exe" "$(winepath -w "$exe")" "$(winepath -w "$reference")" "$seconds"
