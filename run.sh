#!/usr/bin/env bash
# Builds Solvane and starts it with the arguments given.
#
# On a machine without a display it is started on a virtual one: it prints its sidebar, saves a
# picture of its window as build/solvane.png and ends.
set -euo pipefail

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")" && pwd)
# shellcheck source=packaging/dependencies.sh
source "$root/packaging/dependencies.sh"

packages=("${SOLVANE_BUILD_PACKAGES[@]}" "${SOLVANE_RUN_PACKAGES[@]}")
if [[ -n ${WAYLAND_DISPLAY:-} ]]; then
    packages+=(qt6-wayland)
elif [[ -z ${DISPLAY:-} ]]; then
    packages+=("${SOLVANE_DISPLAY_PACKAGES[@]}")
fi
install_packages "${packages[@]}"
build_preset "$root" release all -DSOLVANE_TESTS=OFF

program=$root/build/release/Solvane.app/Contents/MacOS/solvane
if [[ -n ${DISPLAY:-}${WAYLAND_DISPLAY:-} ]]; then
    exec "$program" "$@"
fi
for argument in "$@"; do
    case $argument in
        --list-plugins | --check-plugin* | --help | --help-all | -h | --version | -v)
            exec "$program" "$@" # These show no window.
            ;;
        --snapshot*)
            with_display "$program" "$@"
            exit
            ;;
    esac
done
with_display "$program" --snapshot "$root/build/solvane.png" "$@"
