#!/bin/sh
# The suite as an administrator installs it, from a build folder:
#  1. `cmake --install --prefix P` puts the autostart entry below P and names P's own programs;
#  2. the Debian package from `cpack -G DEB`, installed with dpkg on this machine: files, owners,
#     modes, entries, the spool folder, the machine registry (an administrator's values kept);
#  3. with a CUPS server of the test's own: the package's printer exists, and `lp` of a text file
#     by a user gives a job owned by that user, which the user's assistant (offscreen, ADefault
#     "desktop") turns into a PDF named after the title;
#  4. removing and purging leaves nothing of the package behind.
# Needs root and a Debian system on which the package is not installed; skips with a message
# otherwise. Usage: package_test.sh BUILD_FOLDER
set -eu
build=$(cd "$1" && pwd)
. "$(dirname "$0")/../../scripts/sandbox-registry.sh"
work=$(mktemp -d)
chmod 755 "$work"
spool=/var/spool/paperlark
hive=/etc/paperlark/HKEY_LOCAL_MACHINE.reg
user=plpackagetest
cupsd_pid=""
user_made=""
installed=""
ours=""

cleanup() {
    [ -z "$cupsd_pid" ] || { kill "$cupsd_pid" 2>/dev/null; wait "$cupsd_pid" 2>/dev/null || true; }
    [ -z "$installed" ] || dpkg --purge paperlark >/dev/null 2>&1 || true
    # Both did not exist before the test: whatever a failed run left there is the test's own.
    [ -z "$ours" ] || rm -rf /etc/paperlark "$spool" /var/lib/paperlark
    [ -z "$user_made" ] || userdel -r "$user" >/dev/null 2>&1 || true
    rm -rf "$work"
}
trap cleanup EXIT
fail() {
    echo "FAIL: $*" >&2
    [ ! -f "$work/cups/error_log" ] || tail -n 20 "$work/cups/error_log" >&2
    exit 1
}
skip() { echo "SKIP: $*"; exit 0; }
check() { [ "$2" = "$3" ] || fail "$1: got '$2', expected '$3'"; }

echo "-- install below a prefix"
cmake --install "$build" --prefix "$work/P" >/dev/null
check "autostart entry below the prefix" \
    "$(grep '^Exec=' "$work/P/etc/xdg/autostart/paperlark-assistant.desktop")" "Exec=$work/P/bin/plassist"
check "application entry" "$(grep '^Exec=' "$work/P/share/applications/paperlark-assistant.desktop")" \
    "Exec=$work/P/bin/plassist"
[ -x "$work/P/bin/plassist" ] || fail "the Exec program does not exist"

[ "$(id -u)" -eq 0 ] || skip "the package test needs root (it installs the package on this machine)"
command -v dpkg >/dev/null && command -v cpack >/dev/null || skip "no dpkg or cpack here"
if dpkg-query -W -f='${Status}' paperlark 2>/dev/null | grep -q installed; then
    skip "a paperlark package is installed on this machine already; it is left alone"
fi
[ ! -e /etc/paperlark ] && [ ! -e "$spool" ] && [ ! -e /var/lib/paperlark ] ||
    skip "/etc/paperlark, $spool or /var/lib/paperlark exists already; left alone"
ours=yes

echo "-- build the package"
(cd "$build" && rm -f paperlark_*.deb && cpack -G DEB >"$work/cpack.log" 2>&1) || { cat "$work/cpack.log"; fail "cpack"; }
deb=$(ls "$build"/paperlark_*.deb)

# A CUPS server of our own (its own configuration, socket and spool), so that the machine's CUPS,
# if there is one, is not touched. The package's maintainer scripts reach it through CUPS_SERVER.
cups=""
if command -v cupsd >/dev/null && command -v lpadmin >/dev/null && getent passwd lp >/dev/null; then
    c="$work/cups"
    mkdir -p "$c/ppd" "$c/spool/tmp" "$c/cache" "$c/run"
    cat >"$c/cupsd.conf" <<CONF
Listen $c/cups.sock
LogLevel info
WebInterface No
Browsing No
<Location />
  Order allow,deny
  Allow localhost
</Location>
CONF
    cat >"$c/cups-files.conf" <<CONF
ServerRoot $c
RequestRoot $c/spool
TempDir $c/spool/tmp
CacheDir $c/cache
StateDir $c/run
ErrorLog $c/error_log
AccessLog $c/access_log
PageLog $c/page_log
Printcap $c/printcap
ServerBin /usr/lib/cups
DataDir /usr/share/cups
User lp
Group lp
SystemGroup root
CONF
    cupsd -f -c "$c/cupsd.conf" -s "$c/cups-files.conf" >"$work/cupsd.out" 2>&1 &
    cupsd_pid=$!
    export CUPS_SERVER="$c/cups.sock"
    for _ in $(seq 1 50); do lpstat -r 2>/dev/null | grep -q "is running" && break; sleep 0.2; done
    if lpstat -r 2>/dev/null | grep -q "is running"; then
        cups=yes
    else
        echo "note: cupsd did not start ($(cat "$work/cupsd.out")); the printing part is skipped"
    fi
else
    echo "note: no cupsd/lpadmin here; the printing part is skipped"
fi

echo "-- dpkg -i"
dpkg -i "$deb" >"$work/dpkg.log" 2>&1 || { cat "$work/dpkg.log"; fail "dpkg -i"; }
installed=yes
check "backend" "$(stat -c '%U:%G %a' /usr/lib/cups/backend/paperlark)" "root:root 700"
for p in plassist paperlark plucnfg plsetup; do
    check "$p" "$(stat -c '%U:%G %a' /usr/lib/paperlark/$p)" "root:root 755"
done
check "presence test of the configuration program" "$(readlink /usr/lib/paperlark/plconfig)" "plucnfg"
check "bin link" "$(readlink -f /usr/bin/plassist)" "/usr/lib/paperlark/plassist"
check "bin link" "$(readlink -f /usr/bin/paperlark)" "/usr/lib/paperlark/paperlark"
check "autostart" "$(grep '^Exec=' /etc/xdg/autostart/paperlark-assistant.desktop)" "Exec=/usr/bin/plassist"
check "application entry" "$(grep '^Exec=' /usr/share/applications/paperlark-assistant.desktop)" "Exec=/usr/bin/plassist"
check "files outside /usr and /etc/xdg" "$(dpkg -L paperlark | grep -v -e '^/usr' -e '^/etc/xdg' -e '^/etc$' -e '^/\.$')" ""
check "spool folder" "$(stat -c '%U:%G %a %F' "$spool")" "root:root 1777 directory"
check "machine registry" "$(cat "$hive")" "$(printf '%s\n' 'Windows Registry Editor Version 5.00' '' \
    '[HKEY_LOCAL_MACHINE\Software]' '' '[HKEY_LOCAL_MACHINE\Software\tobrin]' '' \
    '[HKEY_LOCAL_MACHINE\Software\tobrin\PaperlarkXP]' '"psdir"="/var/spool/paperlark/"')"

# An administrator's own spool folder and other values survive the next configuration run.
printf '%s\n' 'Windows Registry Editor Version 5.00' '' '[HKEY_LOCAL_MACHINE\Software\tobrin\PaperlarkXP]' \
    '"psdir"="/srv/print/"' '"Style"="grey"' >"$hive"
/var/lib/dpkg/info/paperlark.postinst configure >/dev/null 2>&1 || fail "postinst configure again"
grep -qx '"psdir"="/srv/print/"' "$hive" && grep -qx '"Style"="grey"' "$hive" ||
    fail "the administrator's values were changed: $(cat "$hive")"

if [ -n "$cups" ]; then
    echo "-- print through CUPS"
    check "printer" "$(lpstat -v Paperlark 2>&1)" "device for Paperlark: paperlark:/var/spool/paperlark"
    # A printer the administrator removed stays removed, through a new configuration and a trigger.
    lpadmin -x Paperlark
    /var/lib/dpkg/info/paperlark.postinst configure >/dev/null 2>&1 || fail "postinst configure again"
    /var/lib/dpkg/info/paperlark.postinst triggered /usr/lib/cups/backend >/dev/null 2>&1 || fail "trigger"
    ! lpstat -p Paperlark >/dev/null 2>&1 || fail "the removed printer came back"
    # CUPS installed after the package (no printer added yet): its backends trigger the package,
    # which adds the printer.
    rm /var/lib/paperlark/printer-added
    /var/lib/dpkg/info/paperlark.postinst triggered /usr/lib/cups/backend >/dev/null 2>&1 || fail "trigger"
    check "printer after the trigger" "$(lpstat -v Paperlark 2>&1)" "device for Paperlark: paperlark:/var/spool/paperlark"
    useradd --create-home --shell /bin/sh "$user" || fail "cannot create the user $user"
    user_made=yes
    home=$(getent passwd "$user" | cut -d: -f6)
    printf 'Dear reader,\nthis letter went through the printer.\n' >"$home/letter.txt"
    chown "$user" "$home/letter.txt"
    as_user() { setpriv --reuid="$user" --regid="$user" --init-groups env HOME="$home" USER="$user" LOGNAME="$user" "$@"; }
    as_user lp -d Paperlark -t "My Letter" "$home/letter.txt" >/dev/null || fail "lp"
    job=""
    for _ in $(seq 1 150); do
        job=$(find "$spool" -maxdepth 1 -name "${user}*.ps" | head -n 1)
        [ -n "$job" ] && break
        sleep 0.2
    done
    [ -n "$job" ] || fail "no job arrived in $spool: $(ls -A "$spool"); $(lpstat -W completed -o 2>&1 | head -3)"
    check "job file" "$(stat -c '%U %a' "$job")" "$user 600"

    sandbox="$home/sandbox"
    mkdir -p "$sandbox/Desktop" "$sandbox/user-spool" "$sandbox/run"
    write_sandbox_registry "$sandbox/registry" "$spool/" "$sandbox/user-spool/" "$sandbox/Desktop"
    chown -R "$user:" "$sandbox"
    as_user env PAPERLARK_REGISTRY_DIR="$sandbox/registry" QT_QPA_PLATFORM=offscreen \
        XDG_RUNTIME_DIR="$sandbox/run" XDG_SESSION_ID=paperlark-package-test /usr/bin/plassist \
        >"$work/plassist.out" 2>&1 &
    assistant=$!
    pdf="$sandbox/Desktop/My Letter.pdf"
    for _ in $(seq 1 150); do
        [ -s "$pdf" ] && ! ls "$sandbox/Desktop" | grep -q '^[~.]' && break
        sleep 0.2
    done
    # The end marker stops the assistant; it stays until removed, so it is removed at once.
    touch "$spool/plassistende.cmd"
    for _ in $(seq 1 25); do kill -0 "$assistant" 2>/dev/null || break; sleep 0.2; done
    rm -f "$spool/plassistende.cmd"
    kill "$assistant" 2>/dev/null && echo "note: the assistant did not stop at the end marker"
    wait "$assistant" 2>/dev/null || true
    [ -s "$pdf" ] || fail "no PDF named after the title: $(ls -A "$sandbox/Desktop"); $(cat "$work/plassist.out")"
    # The text filter's fonts carry no text that pdftotext could read back: the page count it is.
    check "pages of the PDF" "$(pdfinfo "$pdf" | sed -n 's/^Pages: *//p')" "1"
    [ -z "$(ls -A "$spool")" ] || fail "the job stayed in the spool folder: $(ls -A "$spool")"
else
    echo "SKIP: printing through CUPS (no CUPS server could be started)"
fi

echo "-- remove and purge"
dpkg -r paperlark >"$work/dpkg.log" 2>&1 || { cat "$work/dpkg.log"; fail "dpkg -r"; }
for f in /usr/lib/cups/backend/paperlark /usr/lib/paperlark /usr/bin/plassist /usr/bin/paperlark \
    /usr/share/applications/paperlark-assistant.desktop; do
    [ ! -e "$f" ] && [ ! -L "$f" ] || fail "$f stayed after removal"
done
# The administrator's registry is theirs: restore the package's own so that purging may remove it.
printf '%s\n' 'Windows Registry Editor Version 5.00' '' '[HKEY_LOCAL_MACHINE\Software]' '' \
    '[HKEY_LOCAL_MACHINE\Software\tobrin]' '' '[HKEY_LOCAL_MACHINE\Software\tobrin\PaperlarkXP]' \
    '"psdir"="/var/spool/paperlark/"' '' >"$hive"
dpkg --purge paperlark >"$work/dpkg.log" 2>&1 || { cat "$work/dpkg.log"; fail "dpkg --purge"; }
installed=""
for f in /etc/xdg/autostart/paperlark-assistant.desktop "$spool" /etc/paperlark /var/lib/paperlark; do
    [ ! -e "$f" ] || fail "$f stayed after purging: $(ls -la "$f")"
done
[ -z "$cups" ] || ! lpstat -p Paperlark >/dev/null 2>&1 || fail "the printer stayed after purging"
echo "package: all checks passed"
