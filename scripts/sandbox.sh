# Sourced by scripts/run.sh and scripts/soak.sh: a sandbox in which the assistant runs without a
# desktop and without touching the user's own settings.
#
# sandbox_setup FOLDER: makes FOLDER/spool (the machine spool folder), FOLDER/user-spool,
# FOLDER/Desktop and FOLDER/home, and a registry in FOLDER/registry that names them, with the
# administrator's default action "desktop"; then exports what the programs need to use them
# (the caller sets XDG_SESSION_ID). Sets `user` to the current user's name.
sandbox_setup() {
    local sandbox="$1"
    mkdir -p "$sandbox/registry" "$sandbox/spool" "$sandbox/user-spool" "$sandbox/Desktop" "$sandbox/home"
    user="${USER:-$(id -un)}"
    # The machine spool folder and the administrator's default action in the machine key, the
    # user's spool and desktop folders in the user key.
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
    export HOME="$sandbox/home" XDG_RUNTIME_DIR="$sandbox/home"
    export USER="$user" LOGNAME="$user"
}
