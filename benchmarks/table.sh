# The table that all measurements print together. Sourced by them.
# shellcheck shell=bash

# table_row WHAT MEASURED BESIDE VALUE BUDGET - a line of it. The value keeps the budget when it is not
# larger; "-" is no budget. Answers 1 when it is missed.
table_row() {
    awk -v what="$1" -v measured="$2" -v beside="$3" -v value="$4" -v budget="$5" 'BEGIN {
        verdict = budget == "-" ? "" : value <= budget ? "kept" : "MISSED"
        printf "%-44s %12s  %-28s %7.2f %7s  %s\n", what, measured, beside, value, budget, verdict
        exit verdict == "MISSED" }'
}

table_head() {
    printf '%-44s %12s  %-28s %7s %7s\n' "" Solvane beside value budget
}

# median FILE [COLUMN]
median() {
    awk -v column="${2:-1}" '{ print $column }' "$1" | sort -n |
        awk '{ all[NR] = $1 } END { print (all[int((NR + 1) / 2)] + all[int(NR / 2) + 1]) / 2 }'
}

ratio() {
    awk -v value="$1" -v ground="$2" 'BEGIN { print value / ground }'
}
