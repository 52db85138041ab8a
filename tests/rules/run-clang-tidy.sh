#!/usr/bin/env bash
# Runs clang-tidy over the sources, on every core: first over those the last commit and the work tree
# changed, then over the rest.
#
#     run-clang-tidy.sh BUILD-FOLDER [--seconds LIMIT]
#
# With a limit no further file is begun once the time is up; how many were left out is said.
set -euo pipefail

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../.." && pwd)
build=${1:?The build folder is missing}
if [[ ! -r $build/compile_commands.json ]]; then
    echo "There is no $build/compile_commands.json: configure the build first." >&2
    exit 2
fi
build=$(cd "$build" && pwd)
deadline=0
if [[ ${2:-} == --seconds ]]; then
    deadline=$(($(date +%s) + ${3:?The limit is missing}))
fi
cd "$root"

# What the build generates is not ours to tidy.
mapfile -t sources < <(
    sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' "$build/compile_commands.json" |
        grep -v "^$build/" | sort -u
)
mapfile -t changed < <(git diff --name-only --diff-filter=d HEAD~1 -- '*.cpp' '*.h' 2>/dev/null || true)

# A header counts for the source of the same name.
is_changed() {
    local file
    for file in "${changed[@]}"; do
        [[ ${1%.*} == "$root/${file%.*}" ]] && return
    done
    return 1
}

first=()
rest=()
for source in "${sources[@]}"; do
    if is_changed "$source"; then
        first+=("$source")
    else
        rest+=("$source")
    fi
done

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export build scratch deadline
# The flags are g++'s: clang need not know all of them.
check() {
    if ((deadline && $(date +%s) >= deadline)); then
        echo "$1" >>"$scratch/skipped"
        return
    fi
    local output=$scratch/$BASHPID status=0
    clang-tidy -p "$build" --quiet --extra-arg=-Wno-unknown-warning-option "$1" \
        >"$output" 2>&1 || status=1
    ((status)) && cat "$output"
    return $status
}
export -f check

status=0
printf '%s\0' "${first[@]}" "${rest[@]}" |
    xargs -0 -P "$(nproc)" -n 1 bash -c 'check "$1"' check || status=1

skipped=0
[[ -e $scratch/skipped ]] && skipped=$(wc -l <"$scratch/skipped")
echo "clang-tidy: $((${#sources[@]} - skipped)) of ${#sources[@]} files checked, ${#first[@]} of them changed."
exit $status
