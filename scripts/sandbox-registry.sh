# shellcheck shell=sh
# write_sandbox_registry FOLDER MACHINE_SPOOL USER_SPOOL DESKTOP: the registry of a sandboxed
# assistant (use it with PAPERLARK_REGISTRY_DIR=FOLDER): the machine spool folder and the
# administrator's default action "desktop" in the machine key, the user's spool and desktop folders
# in the user key. Folders end in "/" where the registry expects it.
write_sandbox_registry() {
    mkdir -p "$1"
    cat >"$1/HKEY_LOCAL_MACHINE.reg" <<REG
Windows Registry Editor Version 5.00

[HKEY_LOCAL_MACHINE\\Software\\tobrin\\PaperlarkXP]
"psdir"="$2"
"ADefault"="desktop"
REG
    cat >"$1/HKEY_CURRENT_USER.reg" <<REG
Windows Registry Editor Version 5.00

[HKEY_CURRENT_USER\\Software\\tobrin\\PaperlarkXP]
"psdir"="$3"

[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders]
"Desktop"="$4"
REG
}
