#!/usr/bin/env bash
# Soak run: many print jobs through the real assistant, converter and Ghostscript while they are
# killed at random, then an account of every job.
#
#   scripts/soak.sh [--jobs N] [--assistants K] [--suite FOLDER] [--seed S] [--keep]
#
# In a sandbox of its own (registry, spool folder, desktop, temporary folder), as scripts/run.sh
# builds it, it starts K assistants (default 1, each in a session of its own) with the
# administrator's default action "desktop" and drops N jobs (default 300) into the spool folder,
# the way the printer writes them. Meanwhile it kills an assistant (and starts it again), a
# converter or a Ghostscript at random, with SIGKILL or SIGTERM. When every job has been taken or
# the time is up, it stops the assistants with the end marker and prints:
#   jobs in       jobs dropped
#   PDFs out      PDFs on the desktop
#   converted     jobs whose text is in a PDF
#   waiting       jobs not converted whose file is still there: untaken in the spool folder, or
#                 renamed to a private "~" name or into the MultiDoc queue by an assistant
#   lost          jobs neither converted nor waiting
#   duplicated    jobs found in more than one PDF
#   broken        PDFs that pdfinfo cannot read
#   leftovers     temporaries on the desktop, work folders in the temporary folder
# It exits 1 when a job was lost or duplicated or a PDF is broken. Without --suite it builds the
# programs into build-release/ first, as scripts/run.sh does.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"

jobs=300
assistants=1
suite=""
seed="$$"
keep=""
while [ $# -gt 0 ]; do
    case "$1" in
    --jobs) jobs="$2"; shift 2 ;;
    --assistants) assistants="$2"; shift 2 ;;
    --suite) suite="$2"; shift 2 ;;
    --seed) seed="$2"; shift 2 ;;
    --keep) keep=1; shift ;;
    *) echo "usage: $0 [--jobs N] [--assistants K] [--suite FOLDER] [--seed S] [--keep]" >&2; exit 2 ;;
    esac
done
for tool in pdfinfo pdftotext gs pgrep; do
    command -v "$tool" >/dev/null || { echo "soak: $tool is missing (scripts/install-deps.sh installs it)" >&2; exit 2; }
done
if [ -z "$suite" ]; then
    build="$here/build-release"
    cmake -S "$here" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DPAPERLARK_TESTS=OFF -DPAPERLARK_BENCH=OFF >/dev/null
    cmake --build "$build" -j 2 --target plassist paperlark >/dev/null
    suite="$build/suite"
fi
suite="$(cd "$suite" && pwd)"
RANDOM="$seed"

sandbox="$(mktemp -d "${TMPDIR:-/tmp}/paperlark-soak.XXXXXX")"
. "$here/scripts/sandbox.sh"
sandbox_setup "$sandbox"
spool="$sandbox/spool"
userspool="$sandbox/user-spool"
desktop="$sandbox/Desktop"
temp="$sandbox/tmp"
mkdir -p "$temp"
export TMPDIR="$temp"
unset DISPLAY WAYLAND_DISPLAY

declare -a assistant_pids
start_assistant() { # $1: its number, which names its session
    XDG_SESSION_ID="soak-$$-$1" "$suite/plassist" >>"$sandbox/plassist-$1.out" 2>&1 &
    assistant_pids[$1]=$!
}
# The converters and Ghostscripts of this sandbox: their command lines name its desktop. (The
# assistant starts the converter by its Windows name, "Paperlark.exe".)
converter="$suite/[Pp]aperlark[^ ]*"
sandbox_processes() { # $1: the program's path or name as started
    pgrep -f -- "^$1 .*$desktop/" || true
}
stop_everything() {
    touch "$spool/plassistende.cmd"
    for _ in $(seq 1 40); do
        local running=""
        for pid in "${assistant_pids[@]}"; do kill -0 "$pid" 2>/dev/null && running=1; done
        [ -z "$running" ] && break
        sleep 0.25
    done
    for pid in "${assistant_pids[@]}"; do kill -KILL "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
}
trap 'stop_everything; [ -n "$keep" ] || rm -rf "$sandbox"' EXIT

for n in $(seq 1 "$assistants"); do start_assistant "$n"; done
sleep 1

# One job: a page that carries its token; every fourth job shares its title with others, so that
# several of them want the same PDF name at the same time.
drop_job() { # $1: the job's number
    local id
    id="$(printf '%05d' "$1")"
    local title="Soak $id"
    [ $(("$1" % 4)) -eq 0 ] && title="Soak Shared"
    cat >"$spool/~$user$id.ps" <<PS
%!PS-Adobe-3.0
%%Title: $title
%%Pages: 1
%%EndComments
/Helvetica findfont 24 scalefont setfont
72 720 moveto (SOAKJOB-$id) show
showpage
%%EOF
PS
    mv "$spool/~$user$id.ps" "$spool/$user$id.ps"
}

kill_something() {
    local signal=KILL
    [ $((RANDOM % 2)) -eq 0 ] && signal=TERM
    local what=$((RANDOM % 3))
    if [ "$what" -eq 0 ]; then
        local n=$((RANDOM % assistants + 1))
        kill "-$signal" "${assistant_pids[$n]}" 2>/dev/null || true
        wait "${assistant_pids[$n]}" 2>/dev/null || true
        kills[0]=$((kills[0] + 1))
        start_assistant "$n"
        return 0
    fi
    # A conversion takes a fraction of a second: wait a little for one to hit.
    local -a found=()
    local program="$converter"
    [ "$what" -eq 2 ] && program=gs
    for _ in $(seq 1 20); do
        read -r -d '' -a found <<<"$(sandbox_processes "$program")" || true
        [ "${#found[@]}" -gt 0 ] && break
        sleep 0.05
    done
    if [ "${#found[@]}" -gt 0 ] && kill "-$signal" "${found[$((RANDOM % ${#found[@]}))]}" 2>/dev/null; then
        kills[what]=$((kills[what] + 1))
    fi
    return 0
}

# Waits $1 seconds, then now and then kills something; an assistant that ended is started again.
wait_under_fire() {
    sleep "$1"
    [ $((RANDOM % 6)) -eq 0 ] && kill_something
    for a in $(seq 1 "$assistants"); do
        kill -0 "${assistant_pids[$a]}" 2>/dev/null || start_assistant "$a"
    done
}

untaken() { find "$spool" -maxdepth 1 -name "$user[0-9]*.ps" | wc -l; }

kills=(0 0 0) # assistants, converters, Ghostscripts
echo "soak: $jobs jobs, $assistants assistant(s), seed $seed, sandbox $sandbox"
started=$(date +%s)
# Jobs arrive about four a second; something is killed about every second and a half.
for n in $(seq 1 "$jobs"); do
    drop_job "$n"
    wait_under_fire 0.25
done
# Then the rest is handled, still under fire, until nothing is left to take or the time is up.
deadline=$(($(date +%s) + jobs * 2 + 30))
while [ "$(date +%s)" -lt "$deadline" ]; do
    if [ "$(untaken)" -eq 0 ] && [ -z "$(sandbox_processes "$converter")$(sandbox_processes gs)" ]; then
        break
    fi
    wait_under_fire 0.5
done
# A converter ended with its assistant may still be finishing its job.
for _ in $(seq 1 60); do
    [ -z "$(sandbox_processes "$converter")$(sandbox_processes gs)" ] && break
    sleep 0.5
done
stop_everything
took=$(($(date +%s) - started))

# The account. A job's token is in its PDF's text, or in its file while it waits.
declare -A in_pdfs waiting
pdfs=0 broken=0
while IFS= read -r -d '' pdf; do
    pdfs=$((pdfs + 1))
    if ! pdfinfo "$pdf" >/dev/null 2>&1; then
        broken=$((broken + 1))
        echo "broken: $pdf" >&2
        continue
    fi
    for token in $(pdftotext "$pdf" - 2>/dev/null | grep -o 'SOAKJOB-[0-9]*'); do
        in_pdfs[$token]=$((${in_pdfs[$token]:-0} + 1))
    done
done < <(find "$desktop" -maxdepth 1 -name '*.pdf' -print0)
while IFS= read -r -d '' file; do
    for token in $(grep -ao 'SOAKJOB-[0-9]*' "$file" || true); do waiting[$token]=1; done
done < <(find "$spool" "$userspool" -maxdepth 1 -name '*.ps' -print0)

converted=0 still=0 lost=0 duplicated=0
for n in $(seq 1 "$jobs"); do
    token="SOAKJOB-$(printf '%05d' "$n")"
    count=${in_pdfs[$token]:-0}
    if [ "$count" -gt 0 ]; then
        converted=$((converted + 1))
        [ "$count" -gt 1 ] && { duplicated=$((duplicated + 1)); echo "duplicated: $token in $count PDFs" >&2; }
    elif [ -n "${waiting[$token]:-}" ]; then
        still=$((still + 1))
    else
        lost=$((lost + 1))
        echo "lost: $token" >&2
    fi
done
temporaries=$(find "$desktop" -maxdepth 1 \( -name '.paperlark-*' -o -name '~paperlark-*' \) | wc -l)
workfolders=$(find "$temp" -mindepth 1 -maxdepth 1 -type d -name 'paperlark-*' | wc -l)

echo "time:       ${took} s; killed: ${kills[0]} assistant, ${kills[1]} converter, ${kills[2]} Ghostscript"
echo "jobs in:    $jobs"
echo "PDFs out:   $pdfs"
echo "converted:  $converted"
echo "waiting:    $still"
echo "lost:       $lost"
echo "duplicated: $duplicated"
echo "broken:     $broken"
echo "leftovers:  $temporaries temporaries on the desktop, $workfolders work folders"
[ "$lost" -eq 0 ] && [ "$duplicated" -eq 0 ] && [ "$broken" -eq 0 ]
