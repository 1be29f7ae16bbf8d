#!/bin/sh
# The CUPS backend as CUPS runs it (as root where the tests run as root), against a private spool
# folder that is not sticky, so that the kernel's protection of links in sticky folders cannot hide
# a fault of the backend's own.
#   backend_test.sh BACKEND delivers|links|names
set -eu
backend="$1"
case_name="$2"
work=$(mktemp -d)
user_made=""
cleanup() {
    [ -z "$user_made" ] || userdel "$user_made" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }
spool="$work/spool"
mkdir -m 0755 "$spool"

# The printing user: a fresh account where we may create one, else whoever runs the test.
user=$(id -un)
if [ "$(id -u)" -eq 0 ] && command -v useradd >/dev/null; then
    if useradd --no-create-home --shell /usr/sbin/nologin "plbk$case_name" 2>/dev/null; then
        user_made="plbk$case_name"
        user="plbk$case_name"
    else
        echo "note: no test account could be created; jobs go to $user"
    fi
else
    echo "note: not root; jobs go to $user, ownership hand-over is not tested"
fi

# run NUMBER USER TITLE [FILE]: the backend as CUPS calls it; its exit code in $rc.
run() {
    rc=0
    DEVICE_URI="paperlark:$spool" "$backend" "$1" "$2" "$3" 1 "" ${4:+"$4"} <"$work/job.ps" 2>>"$work/log" || rc=$?
}
owner_mode() { stat -c '%U %a' "$1"; }
printf '%%!PS-Adobe-3.0\n%%%%Title: (Old Title)\nshowpage\n' >"$work/job.ps"

case "$case_name" in
delivers)
    "$backend" | grep -qx 'direct paperlark:/var/spool/paperlark "Paperlark" "Paperlark PDF printer"' ||
        fail "no device announcement"

    # From standard input, as CUPS sends most jobs; the title it was printed with comes first.
    run 42 "$user" "My Letter"
    [ "$rc" -eq 0 ] || fail "a normal job failed with $rc"
    job="$spool/${user}0000000042.ps"
    [ -f "$job" ] || fail "the job is not in the spool folder under the user's name: $(ls -A "$spool")"
    printf '%%!PS-Adobe-3.0\n%%%%Title: My Letter\n%%%%Title: (Old Title)\nshowpage\n' >"$work/expected"
    cmp -s "$work/expected" "$job" || fail "the job arrived changed: $(cat "$job")"
    [ "$(owner_mode "$job")" = "$user 600" ] || fail "job is $(owner_mode "$job"), not $user 600"

    # From a file, with a title that tries to start a line of its own; CR LF line ends are kept.
    printf '%%!PS-Adobe-3.0\r\nshowpage\r\n' >"$work/crlf.ps"
    run 43 "$user" "$(printf 'A\nshowpage\r\n\033B')" "$work/crlf.ps"
    printf '%%!PS-Adobe-3.0\r\n%%%%Title: AshowpageB\r\nshowpage\r\n' >"$work/expected"
    cmp -s "$work/expected" "$spool/${user}0000000043.ps" || fail "the title was not written as one safe line"

    # Something that is not PostScript goes through untouched.
    printf 'plain bytes' >"$work/raw"
    run 44 "$user" "T" "$work/raw"
    cmp -s "$work/raw" "$spool/${user}0000000044.ps" || fail "a job that is not PostScript was changed"

    # A job that cannot be read fails and leaves nothing behind, not even a partial file.
    run 45 "$user" "T" "$work/missing.ps"
    [ "$rc" -eq 1 ] || fail "a missing input gave $rc, not 1"
    [ "$(ls -A "$spool" | wc -l)" -eq 3 ] || fail "a failed job left something: $(ls -A "$spool")"

    # CUPS cancels a job with SIGTERM: the partial file goes, as a "~" file would hold up the
    # user's assistant.
    mkfifo "$work/slow"
    DEVICE_URI="paperlark:$spool" "$backend" 46 "$user" T 1 "" <"$work/slow" 2>/dev/null &
    pid=$!
    exec 3>"$work/slow"
    printf '%%!PS-Adobe-3.0\n' >&3
    for _ in $(seq 1 50); do [ -e "$spool/~${user}0000000046.ps" ] && break; sleep 0.1; done
    [ -e "$spool/~${user}0000000046.ps" ] || fail "no partial file while the job is written"
    kill -TERM "$pid"
    wait "$pid" || true
    exec 3>&-
    [ "$(ls -A "$spool" | wc -l)" -eq 3 ] || fail "a cancelled job left something: $(ls -A "$spool")"
    ;;
links)
    # Links planted at the partial and at the final name, pointing at files that must not change.
    printf 'precious\n' >"$work/target-partial"
    printf 'precious\n' >"$work/target-final"
    ln -s "$work/target-partial" "$spool/~${user}0000000007.ps"
    ln -s "$work/target-final" "$spool/${user}0000000007.ps"
    run 7 "$user" "T"
    [ "$rc" -eq 0 ] || fail "the job failed with $rc instead of taking the next name"
    for t in target-partial target-final; do
        [ "$(cat "$work/$t")" = precious ] || fail "$t was overwritten through a link"
        [ "$(owner_mode "$work/$t")" = "$(id -un) 644" ] || fail "$t changed owner or mode: $(owner_mode "$work/$t")"
    done
    [ -L "$spool/~${user}0000000007.ps" ] && [ -L "$spool/${user}0000000007.ps" ] || fail "a planted link was replaced"
    [ -f "$spool/${user}0000000007_1.ps" ] || fail "the job is not under the next name: $(ls -A "$spool")"

    # A folder planted at the final name does not swallow the job.
    mkdir "$spool/${user}0000000008.ps"
    run 8 "$user" "T"
    [ "$rc" -eq 0 ] && [ -f "$spool/${user}0000000008_1.ps" ] || fail "the job went into a planted folder ($rc)"
    [ -z "$(ls -A "$spool/${user}0000000008.ps")" ] || fail "the planted folder received a file"

    # A thousand names planted for a job in advance cannot make it fail (which stops the printer).
    for n in $(seq 1 999); do : >"$spool/~${user}0000000010_$n.ps"; done
    : >"$spool/~${user}0000000010.ps"
    run 10 "$user" "T"
    [ "$rc" -eq 0 ] || fail "planted names made the job fail with $rc"
    [ "$(find "$spool" -name "${user}0000000010_*.ps" -user "$user" -size +0 | wc -l)" -eq 1 ] ||
        fail "the job is not under a free name: $(ls "$spool" | grep -v '^~')"

    # A spool folder that is a link is refused: the printer stops, nothing is written through it.
    mkdir "$work/elsewhere"
    ln -s "$work/elsewhere" "$work/linked-spool"
    rc=0
    DEVICE_URI="paperlark:$work/linked-spool" "$backend" 9 "$user" T 1 "" <"$work/job.ps" 2>/dev/null || rc=$?
    [ "$rc" -eq 4 ] || fail "a linked spool folder gave $rc, not 4 (stop)"
    [ -z "$(ls -A "$work/elsewhere")" ] || fail "a job was written through a linked spool folder"
    [ -z "$(ls -A "$spool" | grep '^~' | grep -v -e "^~${user}0000000007.ps$" -e "^~${user}0000000010")" ] ||
        fail "a partial file stayed"
    ;;
names)
    # Every program a shell backend would have used records its call here; none may be called.
    mkdir "$work/bin"
    for p in sh bash dash cat cp mv rm chown chmod mkdir touch ln install env printf id; do
        printf '#!/bin/sh\necho "%s $*" >>"%s/calls"\n' "$p" "$work" >"$work/bin/$p"
        chmod 755 "$work/bin/$p"
    done
    before=$(cd "$work" && find . -path ./spool -prune -o -print | sort)

    # Names that would be an option, leave the folder, hide the job or match other jobs: refused.
    for name in "-rf" "--help" "../evil" "a/b" "/etc/x" ".hidden" "~partial" "*" "a?b" "" \
        "$(printf 'tab\there')"; do
        rc=0
        PATH="$work/bin" DEVICE_URI="paperlark:$spool" "$backend" 3 "$name" T 1 "" <"$work/job.ps" \
            2>/dev/null || rc=$?
        [ "$rc" -eq 5 ] || fail "user name '$name' gave $rc, not 5 (job refused)"
    done
    [ -z "$(ls -A "$spool")" ] || fail "a refused name left a file: $(ls -A "$spool")"

    # Odd names a user database could hold stay text: the job is a file of exactly that name,
    # readable by root only, as nobody here has that name.
    for name in "o'brien x" 'say "hi"' '$(touch pwned)' 'DOMAIN\user' "; rm -rf ." "ütf-8 ñame"; do
        rc=0
        PATH="$work/bin" DEVICE_URI="paperlark:$spool" "$backend" 4 "$name" T 1 "" <"$work/job.ps" \
            2>/dev/null || rc=$?
        [ "$rc" -eq 0 ] || fail "user name '$name' gave $rc"
        job="$spool/${name}0000000004.ps"
        [ -f "$job" ] || fail "no job file for '$name': $(ls -A "$spool")"
        [ "$(owner_mode "$job")" = "$(id -un) 600" ] || fail "job of '$name' is $(owner_mode "$job")"
    done
    [ ! -e "$work/calls" ] || fail "the backend started programs: $(cat "$work/calls")"
    after=$(cd "$work" && find . -path ./spool -prune -o -print | sort)
    [ "$before" = "$after" ] || fail "something appeared outside the spool folder"
    [ "$(find "$spool" -mindepth 1 | wc -l)" -eq 6 ] || fail "unexpected files: $(ls -A "$spool")"
    ;;
*) fail "unknown case $case_name" ;;
esac
echo "backend $case_name: all checks passed"
