#!/usr/bin/env bash
# Builds Solvane with its tests and runs them all, without a display.
#
#     ./test.sh [--preset dev|asan|tsan|release] [--threads] [arguments for ctest]
#
# With --threads only the tests that are about threads.
set -euo pipefail

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")" && pwd)
# shellcheck source=packaging/dependencies.sh
source "$root/packaging/dependencies.sh"

preset=dev
case ${1:-} in
    --preset)
        preset=${2:-}
        shift $(($# > 1 ? 2 : 1))
        ;;
    --preset=*)
        preset=${1#--preset=}
        shift
        ;;
    -h | --help)
        sed -n '2,6s/^# \{0,1\}//p' "$root/test.sh"
        exit
        ;;
esac
case $preset in
    dev | asan | tsan | release) ;;
    *)
        say "There is no preset '$preset': choose dev, asan, tsan or release."
        exit 2
        ;;
esac

install_packages "${SOLVANE_BUILD_PACKAGES[@]}" "${SOLVANE_RUN_PACKAGES[@]}" \
    "${SOLVANE_DISPLAY_PACKAGES[@]}" "${SOLVANE_TEST_PACKAGES[@]}"
target=all
if [[ ${1:-} == --threads ]]; then
    shift
    target=threaded_tests
    set -- --label-regex threads "$@"
fi
build_preset "$root" "$preset" "$target" -DSOLVANE_TESTS=ON

# A test that wants a display starts one; none may open a window on the desktop of whoever runs this.
unset DISPLAY WAYLAND_DISPLAY
cd "$root"
exec ctest --preset "$preset" --parallel "$(nproc)" "$@"
