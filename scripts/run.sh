#!/usr/bin/env bash
# The assistant's main job. Installs what is missing and builds the programs, then:
#  - on a desktop (DISPLAY or WAYLAND_DISPLAY set): starts the assistant for this user;
#  - without one: shows the main job end to end in a sandbox of its own (registry, spool folder,
#    desktop folder): it starts the assistant, prints a job the way a word processor would, lets
#    the administrator's default action "desktop" finish it, prints the path and page count of the
#    PDF that appeared and stops the assistant with the end marker.
# PAPERLARK_HEADLESS=1 forces the sandbox run even on a desktop.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
"$here/scripts/install-deps.sh"

build="$here/build-release"
cmake -S "$here" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DPAPERLARK_TESTS=OFF -DPAPERLARK_BENCH=OFF >/dev/null
cmake --build "$build" -j "$(nproc)" --target plassist paperlark >/dev/null
suite="$build/suite"

if [ -z "${PAPERLARK_HEADLESS:-}" ] && [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo "Starting the Paperlark assistant ($suite/plassist); it lives in the notification area."
    exec "$suite/plassist" "$@"
fi

sandbox="$(mktemp -d "${TMPDIR:-/tmp}/paperlark-demo.XXXXXX")"
# The sandbox stays, so that the PDF can be looked at; it lies below the temporary folder.
mkdir -p "$sandbox/registry" "$sandbox/spool" "$sandbox/user-spool" "$sandbox/Desktop" "$sandbox/home"

user="${USER:-$(id -un)}"
# The registry of the sandbox: the machine spool folder and the administrator's default action in
# the machine key, the user's spool and desktop folders in the user key.
cat >"$sandbox/registry/HKEY_LOCAL_MACHINE.reg" <<REG
Windows Registry Editor Version 5.00

[HKEY_LOCAL_MACHINE\\Software\\tobrin\\PaperlarkXP]
"psdir"="$sandbox/spool/"
"ADefault"="desktop"
REG
cat >"$sandbox/registry/HKEY_CURRENT_USER.reg" <<REG
Windows Registry Editor Version 5.00

[HKEY_CURRENT_USER\\Software\\tobrin\\PaperlarkXP]
"psdir"="$sandbox/user-spool/"

[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders]
"Desktop"="$sandbox/Desktop"
REG

export PAPERLARK_REGISTRY_DIR="$sandbox/registry"
export QT_QPA_PLATFORM=offscreen
# Nobody can answer a window here: the converter reports on standard error instead.
unset DISPLAY WAYLAND_DISPLAY
export HOME="$sandbox/home" XDG_RUNTIME_DIR="$sandbox/home" XDG_SESSION_ID="paperlark-demo-$$"
export USER="$user" LOGNAME="$user"

echo "Sandbox: $sandbox"
echo "Starting the assistant for user $user ..."
"$suite/plassist" >"$sandbox/plassist.out" 2>&1 &
assistant=$!

# A print job as the printer writes it: under a "~" name while it is being written, then renamed
# to the user's job name, so the assistant never sees half a job.
job="$sandbox/spool/${user}0001.ps"
cat >"$sandbox/spool/~${user}0001.ps" <<'PS'
%!PS-Adobe-3.0
%%Title: Microsoft Word - Quarterly Report.docx
%%Creator: Microsoft Word
%%Pages: 2
%%EndComments
/Helvetica findfont 24 scalefont setfont
72 720 moveto (Quarterly Report) show
/Helvetica findfont 12 scalefont setfont
72 690 moveto (Revenue rose in every region this quarter.) show
showpage
/Helvetica findfont 12 scalefont setfont
72 720 moveto (Outlook for the next quarter) show
showpage
%%EOF
PS
mv "$sandbox/spool/~${user}0001.ps" "$job"
echo "Printed: \"Microsoft Word - Quarterly Report.docx\" as $job"

pdf="$sandbox/Desktop/Quarterly Report.pdf"
for _ in $(seq 1 120); do
    [ -s "$pdf" ] && ! ls "$sandbox/Desktop"/*.tmp* >/dev/null 2>&1 && break
    sleep 0.5
done

touch "$sandbox/spool/plassistende.cmd"
for _ in $(seq 1 20); do kill -0 "$assistant" 2>/dev/null || break; sleep 0.25; done
if kill -0 "$assistant" 2>/dev/null; then
    kill "$assistant"
    echo "The assistant did not stop at the end marker." >&2
fi
wait "$assistant" 2>/dev/null || true

if [ ! -s "$pdf" ]; then
    echo "No PDF appeared on the sandbox desktop. The assistant said:" >&2
    cat "$sandbox/plassist.out" >&2
    ls -la "$sandbox/Desktop" "$sandbox/spool" >&2
    exit 1
fi
pages=$(pdfinfo "$pdf" | awk '/^Pages:/ {print $2}')
echo "PDF: $pdf"
echo "Pages: $pages"
echo "The assistant stopped at the end marker."
