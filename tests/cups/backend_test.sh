#!/bin/sh
# The CUPS backend hands a job to the spool folder complete, under the printing user's name, and
# never leaves a partial "~" file behind.
set -eu
backend="$1"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

printf '%%!PS-Adobe-3.0\n%%%%Title: Quarterly Report\nshowpage\n' >"$work/job.ps"
DEVICE_URI="paperlark:$work/spool" sh "$backend" 7 alice "Quarterly Report" 1 "" "$work/job.ps" 2>/dev/null
[ -f "$work/spool/alice000007.ps" ] || fail "the job is not in the spool folder under the user's name"
cmp -s "$work/job.ps" "$work/spool/alice000007.ps" || fail "the job changed on its way"
ls "$work/spool" | grep -q '^~' && fail "a partial file stayed behind"

# From standard input, as CUPS sends most jobs; a name that could leave the folder is not used.
DEVICE_URI="paperlark:$work/spool" sh "$backend" 8 ../evil "t" 1 "" <"$work/job.ps" 2>/dev/null
[ -f "$work/spool/unknown000008.ps" ] || fail "a job with an unusable user name is not an unknown job"

# Without arguments it announces its device.
sh "$backend" | grep -q '^direct paperlark:' || fail "no device announcement"
# A missing input file fails and leaves nothing.
if DEVICE_URI="paperlark:$work/spool2" sh "$backend" 9 bob t 1 "" "$work/missing.ps" 2>/dev/null; then
    fail "a missing input was accepted"
fi
[ -z "$(ls -A "$work/spool2" 2>/dev/null)" ] || fail "a failed job left a file behind"
echo "backend: all checks passed"
