#!/usr/bin/env bash
# Every package that the scripts install is told of with its reason.
#
#     check-dependencies.sh SOURCE_FOLDER
set -euo pipefail

# shellcheck source=packaging/dependencies.sh
source "$1/packaging/dependencies.sh"

status=0
for package in "${SOLVANE_BUILD_PACKAGES[@]}" "${SOLVANE_RUN_PACKAGES[@]}" \
    "${SOLVANE_DISPLAY_PACKAGES[@]}" "${SOLVANE_TEST_PACKAGES[@]}" "${SOLVANE_BENCHMARK_PACKAGES[@]}"; do
    if ! grep -q "^| .*\`$package\`.* | .\+ |$" "$1/docs/dependencies.md"; then
        printf 'docs/dependencies.md does not tell what %s is for\n' "$package"
        status=1
    fi
done
exit "$status"
