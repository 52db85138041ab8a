# What a person at the desk does, for the tests: start the program, look, click, type, wait.
# Sourced by run, which sets $build.
# shellcheck shell=bash

fixtures=$build/tests/fixtures
pictures=$build/tests/e2e
patience=20 # seconds for anything that happens at once on an idle machine

# --- Tests ---------------------------------------------------------------------------------------

fail() {
    import -window root "$picture" 2>/dev/null || true
    printf '    %s\n    Picture: %s\n' "$*" "$picture" >&2
    if [[ -s $HOME/output ]]; then
        sed 's/^/    solvane: /' "$HOME/output" >&2
    fi
    exit 1
}

# The clock's seconds and microseconds have the language's decimal mark between them, which is that of
# the program that is being started.
#
# poll SECONDS COMMAND... - tries until the command succeeds.
poll() {
    local -i deadline=$((${EPOCHREALTIME//[!0-9]/} + $1 * 1000000))
    shift
    until "$@"; do
        ((${EPOCHREALTIME//[!0-9]/} < deadline)) || return 1
        sleep 0.05
    done
}

# expect WHAT COMMAND... - waits for the command to succeed.
expect() {
    local what=$1
    shift
    poll "$patience" "$@" || fail "expected: $what"
}

run_test() {
    local subject=$1 name=$2 status=0 started=${EPOCHREALTIME//[!0-9]/}
    picture=$pictures/$subject-${name#test_}.png
    mkdir -p "$pictures"
    rm -f "$picture"
    (
        set -e
        HOME=$(mktemp -d "$SOLVANE_E2E_SCRATCH/home/XXXXXX")
        plugins=$HOME/Library/Application\ Support/Solvane
        settings=$HOME/.config/Solvane/solvane.conf
        log=$HOME/Library/Logs/solvane.log
        export SOLVANE_FIXTURE_NOTES=$HOME/notes
        pid=
        trap end_programs EXIT
        mkdir -p "$plugins"
        touch "$SOLVANE_FIXTURE_NOTES"
        solvane=$build/Solvane.app/Contents/MacOS/solvane
        "$name"
    ) &
    wait $! || status=$?
    printf '%-6s %s (%d ms)\n' "$( ((status)) && echo FAILED || echo ok)" "$subject ${name#test_}" \
        $(((${EPOCHREALTIME//[!0-9]/} - started) / 1000))
    return "$status"
}

end_programs() {
    local -a running
    mapfile -t running < <(jobs -p)
    if ((${#running[@]})); then
        kill "${running[@]}" 2>/dev/null || true
        wait "${running[@]}" 2>/dev/null || true
    fi
}

start_session() {
    # Before any program looks for it: the bus that assistive technology listens on.
    "$build/tests/e2e/accessible" 0 || true
    openbox --sm-disable >/dev/null 2>&1 &
    poll "$patience" eval 'xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q "#"' || {
        echo "The window manager did not start." >&2
        return 1
    }
}

# --- The program ---------------------------------------------------------------------------------

# install_plugins FIXTURE... - for the user; "NamedByFolder:Heading-Name" copies under that name.
install_plugins() {
    local fixture
    for fixture in "$@"; do
        cp -R "$fixtures/${fixture%%:*}/${fixture%%:*}.bundle" "$plugins/${fixture#*:}.bundle"
    done
}

# install_broken_copies - Truncated.bundle and Garbage.bundle.
install_broken_copies() {
    local good=$fixtures/Good/Good.bundle
    cp -R "$good" "$plugins/Truncated.bundle"
    truncate -s 20000 "$plugins/Truncated.bundle/Contents/MacOS/Good.so"
    cp -R "$good" "$plugins/Garbage.bundle"
    head -c 300 /dev/urandom >"$plugins/Garbage.bundle/Contents/Info.plist"
}

# start [ARGUMENT...] - in the background; sets $pid.
start() {
    "$solvane" "$@" >>"$HOME/output" 2>&1 &
    pid=$!
}

# window [NAME] - prints the visible window of the program.
window() {
    xdotool search --all --onlyvisible --pid "$pid" --name "^${1:-Solvane}\$" 2>/dev/null | head -1 |
        grep .
}
has_window() { window "$@" >/dev/null; }
has_no_window() { ! has_window "$@"; }
is_running() { kill -0 "$pid" 2>/dev/null; }
is_gone() { ! is_running; }
has_focus() { [[ $(xdotool getactivewindow 2>/dev/null) == "$(window "$@")" ]]; }

# Whether the program knows where the window manager has put its window; clicks go by what it says.
is_in_place() {
    local placed
    placed=$(xwininfo -id "$(window)" 2>/dev/null | awk '/Absolute upper-left/ { printf "%s ", $NF }')
    [[ $(objects frame "${1:-Solvane}") == "$placed"* ]]
}

# start_shown [ARGUMENT...] - and waits for the window with its sidebar.
start_shown() {
    start "$@"
    expect_shown
}

# bring_back ID - the minimised window.
bring_back() {
    xdotool windowmap "$1" windowactivate "$1"
    expect "the window in front" has_focus
    expect "the window in its place" is_in_place
}

expect_shown() {
    expect "the main window" has_window
    xdotool windowactivate "$(window)"
    expect "the main window in front" has_focus
    expect "the sidebar's headings" shows "tree item" "${first_heading:-Cleaning}"
    expect "the window in its place" is_in_place
}

# expect_end STATUS - of the program, by itself. "failure" is any status but 0.
expect_end() {
    expect "the program to end" is_gone
    local status=0
    wait "$pid" || status=$?
    case $1 in
        failure) ((status > 0 && status < 128)) || fail "expected a failure, the status is $status" ;;
        *) ((status == $1)) || fail "expected status $1, it is $status" ;;
    esac
}

quit() {
    xdotool key ctrl+q
    expect_end 0
}

# --- Looking -------------------------------------------------------------------------------------

# objects ROLE NAME [STATE] - prints "x y width height" of what shows with that role, name (a pattern)
# and state.
objects() {
    "$build/tests/e2e/accessible" "$pid" |
        ROLE=$1 NAME="^($2)\$" STATE=${3:-showing} awk -F '\t' '
            $1 == ENVIRON["ROLE"] && $7 ~ ENVIRON["NAME"] &&
            index($6, ENVIRON["STATE"]) { print $2, $3, $4, $5 }'
}
shows() { [[ -n $(objects "$@") ]]; }
shows_not() { ! shows "$@"; }

# names ROLE NAME - prints the names (a pattern) of what shows with that role.
names() {
    "$build/tests/e2e/accessible" "$pid" |
        ROLE=$1 NAME="^($2)\$" awk -F '\t' '$1 == ENVIRON["ROLE"] && $7 ~ ENVIRON["NAME"] { print $7 }'
}

# last_note_is TEXT - whether this is the last line that a fixture wrote.
last_note_is() { [[ $(tail -n 1 "$SOLVANE_FIXTURE_NOTES") == "$1" ]]; }

# --- Mouse ---------------------------------------------------------------------------------------

# A window manager slides windows about, the program its sheets. Whether what shows, and the window,
# rest where they were a moment ago.
is_at_rest() {
    local before=$place
    place=$(objects "$@" | head -1)
    [[ -n $place && $place == "$before" ]] && { shows_not frame Solvane || is_in_place; }
}

# click ROLE NAME - into the middle of what shows.
click() {
    local place= x y width height
    expect "$1 \"$2\"" is_at_rest "$@"
    read -r x y width height <<<"$place"
    xdotool mousemove $((x + width / 2)) $((y + height / 2)) click 1
}
