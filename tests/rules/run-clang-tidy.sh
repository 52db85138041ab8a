#!/usr/bin/env bash
# Runs clang-tidy over the sources of a build, on every core.
#
#     run-clang-tidy.sh BUILD-FOLDER
#
# In a build that puts several sources into one, as the preset asan does, what they include is read
# once for all of them: an eighth of the time.
set -euo pipefail

build=${1:?The build folder is missing}
if [[ ! -r $build/compile_commands.json ]]; then
    echo "There is no $build/compile_commands.json: configure the build first." >&2
    exit 2
fi
build=$(cd "$build" && pwd)

# What the build generates is not ours to tidy, but for the files that only include ours.
mapfile -t sources < <(
    sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' "$build/compile_commands.json" | sort -u |
        while read -r source; do
            [[ $source == "$build"/* && $source != */Unity/unity_* ]] || printf '%s\n' "$source"
        done
)

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
# A header that g++ has compiled beforehand is nothing to clang, which reads its text.
prelude=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../support" && pwd)/Prelude.h
sed -e "s|-include [^ ]*/cmake_pch.hxx|-include $prelude|" -e 's/ -Winvalid-pch//' \
    "$build/compile_commands.json" >"$scratch/compile_commands.json"
export scratch
# The flags are g++'s: clang need not know all of them.
check() {
    local output=$scratch/$BASHPID status=0
    clang-tidy -p "$scratch" --quiet --extra-arg=-Wno-unknown-warning-option "$1" \
        >"$output" 2>&1 || status=1
    ((status)) && cat "$output"
    return $status
}
export -f check

status=0
printf '%s\0' "${sources[@]}" | xargs -0 -P "$(nproc)" -n 1 bash -c 'check "$1"' check || status=1

echo "clang-tidy: ${#sources[@]} files checked."
exit $status
