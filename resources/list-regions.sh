#!/usr/bin/env bash
# Prints the regions that the C library knows for each of our languages, as they stand in
# languages/regions.txt. Needs Debian's package "locales". To refresh the list:
#
#     resources/list-regions.sh >resources/languages/regions.txt
set -euo pipefail

folder=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/languages
locales=/usr/share/i18n/SUPPORTED

echo "# The regions of each language, written by list-regions.sh. 419 is Latin America."
for file in "$folder"/??.strings; do
    language=$(basename "$file" .strings)
    # Who wants English of some region gets it anyway: it stands in for what is missing.
    [[ $language != en ]] || continue
    regions=$(sed -n "s/^${language}_\([A-Z][A-Z]\)[ .@].*/\1/p" "$locales")
    [[ $language != es ]] || regions+=$'\n419'
    LC_ALL=C sort -u <<<"$regions" | tr '\n' ' ' | sed "s/^/$language /; s/ \$/\n/"
done
