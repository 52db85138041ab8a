#!/usr/bin/env bash
# Runs clang-tidy over the sources, on every core.
#
#     run-clang-tidy.sh BUILD-FOLDER [--changed [BASE]]
#
# With --changed only over what differs from the commit BASE (the parent of HEAD if not given), the
# work tree included; a header counts for every source of its folder.
set -euo pipefail

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../.." && pwd)
build=${1:?The build folder is missing}
database=$build/compile_commands.json
if [[ ! -r $database ]]; then
    echo "There is no $database: configure the build first." >&2
    exit 2
fi
build=$(cd "$build" && pwd)
cd "$root"

# What the build generates is not ours to tidy.
mapfile -t sources < <(
    sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' "$build/compile_commands.json" |
        grep -v "^$build/" | sort -u
)

if [[ ${2:-} == --changed ]]; then
    base=${3:-HEAD~1}
    if git rev-parse --verify --quiet "$base^{commit}" >/dev/null; then
        mapfile -t changed < <(git diff --name-only --diff-filter=d "$base" -- '*.cpp' '*.h')
        selected=()
        for source in "${sources[@]}"; do
            for file in "${changed[@]}"; do
                if [[ $source == "$root/$file" ||
                    ($file == *.h && $(dirname "$source") == "$root/$(dirname "$file")") ]]; then
                    selected+=("$source")
                    break
                fi
            done
        done
        sources=("${selected[@]}")
    fi
fi

if ((${#sources[@]} == 0)); then
    echo "Nothing to check."
    exit
fi
echo "Checking ${#sources[@]} files."
# The warnings switched off for clang alone: the flags are written for g++.
printf '%s\0' "${sources[@]}" |
    xargs -0 -P "$(nproc)" -n 4 clang-tidy -p "$build" --quiet \
        --extra-arg=-Wno-unknown-warning-option 2> >(grep -v 'warnings generated\.$' >&2 || true)
