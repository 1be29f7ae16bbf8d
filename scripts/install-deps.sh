#!/usr/bin/env bash
# Installs, from Debian's packages, whatever the build, the tests and the programs need and the
# machine does not have yet. Safe to run again: it installs only what is missing.
set -euo pipefail

packages=(
    build-essential cmake ninja-build pkg-config
    libgtest-dev libgmock-dev libbenchmark-dev
    clang libclang-rt-14-dev              # libFuzzer and the sanitizer runtimes
    g++-mingw-w64-x86-64-posix            # the Windows programs, cross compiled
    wine wine64                           # runs the Windows tests
    googletest                            # GoogleTest's sources, built with the cross compiler
    nsis                                  # the Windows installer
    ghostscript poppler-utils             # the converter's engine and the tests' PDF checks
    qt6-base-dev qt6-base-dev-tools       # the Linux desktop front-end (Widgets, D-Bus notifications)
    dbus dbus-daemon                      # the tests' private session bus (dbus-run-session)
    fonts-dejavu-core                     # a font for the dialogs, also on machines without a desktop
    xdg-utils xvfb xauth
    cups cups-daemon cups-client cups-bsd cups-filters # a real CUPS server (cupsd) for the printer tests
    dpkg-dev                              # cpack's dependency list for the Debian package
    libxml2-utils                         # the check of the Windows policy templates
)

missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if ((${#missing[@]})); then
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    echo "Installing: ${missing[*]}"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
