#!/usr/bin/env bash
# Every source file is laid out as .clang-format says.
set -euo pipefail

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../.." && pwd)
cd "$root"

# From git when it can tell, so that files nobody means to commit do not count; a source package has
# no git.
sources() {
    git ls-files -z --cached --others --exclude-standard -- '*.cpp' '*.h' 2>/dev/null ||
        find . -path ./build -prune -o \( -name '*.cpp' -o -name '*.h' \) -print0
}

mapfile -d '' -t files < <(sources)
if ((${#files[@]} == 0)); then
    echo "No source files found under $root" >&2
    exit 1
fi
existing=()
for file in "${files[@]}"; do
    [[ -e $file ]] && existing+=("$file")
done
printf '%s\0' "${existing[@]}" |
    xargs -0 -P "$(nproc)" -n 20 clang-format --style=file --dry-run --Werror
echo "${#existing[@]} files are in order."
