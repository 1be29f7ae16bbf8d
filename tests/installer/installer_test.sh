#!/usr/bin/env bash
# plsetup.exe under Wine: a silent install puts the programs, the profiles, the templates and the
# registry values in place and creates the machine spool folder; an upgrade stops a running
# assistant with the end marker, which does not survive it, and keeps an administrator's spool
# folder; the uninstaller removes all it installed and keeps a job that is still waiting there.
#
# usage: installer_test.sh PLSETUP_EXE        (WINEPREFIX and friends as scripts/windows-tests.sh sets them)
set -uo pipefail
setup="${1:?usage: $0 PLSETUP_EXE}"
: "${WINEPREFIX:?WINEPREFIX must name the prefix of this test run}"
drive="$WINEPREFIX/drive_c"
suite="$drive/Program Files/Paperlark_XP"
spool="$drive/ProgramData/Paperlark_XP/spool"
key='HKLM\Software\tobrin\PaperlarkXP'
run='HKLM\Software\Microsoft\Windows\CurrentVersion\Run'

failures=0
fail() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}
# The value's data as `reg query` shows it, or nothing when it is not there.
value() { wine reg query "$1" /v "$2" 2>/dev/null | tr -d '\r' | sed -n "s/^ *$2 *REG_[A-Z_]* *//p"; }
expect_value() {
    local got
    got=$(value "$1" "$2")
    [ "$got" = "$3" ] || fail "$1 $2 is \"$got\", not \"$3\""
}
# The uninstaller copies itself away and returns at once; what it removes goes a moment later.
wait_gone() {
    for _ in $(seq 100); do
        [ -e "$1" ] || return 0
        sleep 0.2
    done
    return 1
}

# A clean machine as far as the suite is concerned.
wine reg delete "$key" /f >/dev/null 2>&1
rm -rf "$suite" "$drive/ProgramData/Paperlark_XP"
host_setup=$(winepath -w "$setup")

wine "$host_setup" /S '/GS=C:\Ghostscript\bin\gswin64c.exe' || fail "the silent install failed"
for file in plAssist.exe Paperlark.exe plsetup.exe uninstall.exe "Standard.plp" "High Quality.plp" \
    policies/Paperlark.admx policies/en-US/Paperlark.adml policies/de-DE/Paperlark.adml; do
    [ -f "$suite/$file" ] || fail "$file was not installed"
done
[ -d "$spool" ] || fail "the machine spool folder was not created"
expect_value "$key" plDir 'C:\Program Files\Paperlark_XP\'
expect_value "$key" psdir 'C:\ProgramData\Paperlark_XP\spool\'
expect_value "$key" gswin32c 'C:\Ghostscript\bin\gswin64c.exe'
expect_value "$run" plAssist '"C:\Program Files\Paperlark_XP\plAssist.exe"'
[ -e "$spool/plassistende.cmd" ] && fail "the end marker was left in the spool folder"

# An upgrade stops the running assistant, and keeps the spool folder an administrator chose and
# what a user left in it.
mkdir -p "$drive/Spool"
wine reg add "$key" /v psdir /d 'C:\Spool\' /f >/dev/null 2>&1
echo "%!PS" >"$drive/Spool/alice-waiting.ps"
wine 'C:\Program Files\Paperlark_XP\plAssist.exe' >/dev/null 2>&1 &
assistant=$!
sleep 3 # its start-up, up to the first look into the spool folder
kill -0 "$assistant" 2>/dev/null || fail "the assistant did not start"
wine "$host_setup" /S || fail "the second install failed"
for _ in $(seq 50); do kill -0 "$assistant" 2>/dev/null || break; sleep 0.1; done
if kill -0 "$assistant" 2>/dev/null; then
    fail "the upgrade did not stop the running assistant"
    kill "$assistant"
fi
expect_value "$key" psdir 'C:\Spool\'
expect_value "$key" gswin32c 'C:\Ghostscript\bin\gswin64c.exe'
[ -e "$drive/Spool/plassistende.cmd" ] && fail "the end marker was left after the upgrade"

wine "$(winepath -w "$suite/uninstall.exe")" /S || fail "the uninstaller failed"
wait_gone "$suite" || fail "the suite folder is still there: $(ls "$suite" 2>/dev/null | tr '\n' ' ')"
for _ in $(seq 50); do [ -z "$(value "$run" plAssist)" ] && break; sleep 0.2; done
[ -z "$(value "$run" plAssist)" ] || fail "the assistant still starts at logon"
for name in plDir psdir gswin32c Version Build; do
    [ -z "$(value "$key" "$name")" ] || fail "the uninstaller left $name"
done
[ -f "$drive/Spool/alice-waiting.ps" ] || fail "the uninstaller removed a waiting job"
[ -e "$drive/Spool/plassistende.cmd" ] && fail "the end marker was left after uninstalling"

rm -rf "$drive/Spool" "$drive/ProgramData/Paperlark_XP"
((failures == 0)) && echo "installer: installed, upgraded and removed"
((failures == 0))
