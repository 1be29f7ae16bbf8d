# Sourced by scripts/run.sh and scripts/soak.sh: a sandbox in which the assistant runs without a
# desktop and without touching the user's own settings.
#
# sandbox_setup FOLDER: makes FOLDER/spool (the machine spool folder), FOLDER/user-spool,
# FOLDER/Desktop and FOLDER/home, and a registry in FOLDER/registry that names them, with the
# administrator's default action "desktop"; then exports what the programs need to use them
# (the caller sets XDG_SESSION_ID). Sets `user` to the current user's name.
. "$(dirname "${BASH_SOURCE[0]}")/sandbox-registry.sh"

sandbox_setup() {
    local sandbox="$1"
    mkdir -p "$sandbox/registry" "$sandbox/spool" "$sandbox/user-spool" "$sandbox/Desktop" "$sandbox/home"
    user="${USER:-$(id -un)}"
    write_sandbox_registry "$sandbox/registry" "$sandbox/spool/" "$sandbox/user-spool/" "$sandbox/Desktop"
    export PAPERLARK_REGISTRY_DIR="$sandbox/registry"
    export QT_QPA_PLATFORM=offscreen
    # Nobody can answer a window here: the converter reports on standard error instead.
    unset DISPLAY WAYLAND_DISPLAY
    export HOME="$sandbox/home" XDG_RUNTIME_DIR="$sandbox/home"
    export USER="$user" LOGNAME="$user"
}
