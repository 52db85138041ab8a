# One program per user: it lives on without a window, and later launches bring it back.
# shellcheck shell=bash disable=SC2154

close_window() {
    wmctrl -i -c "$(window)"
    expect "the window to close" has_no_window
}

# launch_again [ARGUMENT...] - a launch while the program runs; fails unless it ends well.
launch_again() {
    local status=0
    timeout "$patience" "$solvane" "$@" >>"$HOME/output" 2>&1 || status=$?
    ((status == 0)) || fail "the second launch ($*) ended with $status"
}

test_second_launch_brings_the_window_back() {
    local before after
    start_shown
    close_window
    sleep 0.3
    is_running || fail "closing the window ended the program"

    before=${EPOCHREALTIME//[!0-9]/}
    launch_again
    expect "the window to come back" has_window
    after=${EPOCHREALTIME//[!0-9]/}
    ((after - before < 2000000)) || fail "it took $(((after - before) / 1000)) ms to come back"
    expect "the window in front" has_focus
    expect "the sidebar" shows "tree item" Cleaning

    xdotool key ctrl+w
    expect "the window to close" has_no_window
    launch_again --safe-mode
    grep -q "^solvane: it is running already" "$HOME/output" || fail "no word of what has no effect"
    expect "the window to come back" has_window
    close_window
    touch "$HOME/some document.txt"
    launch_again "$HOME/some document.txt"
    grep -q "^solvane: documents are not opened: .*some document" "$HOME/output" || fail "no word of the document"
    expect "the window to come back with a document" has_window
    wmctrl -s 2
    launch_again
    expect "the window on the desktop that is seen" desktops_are 2
    expect "the window in front" has_focus
    quit
    wmctrl -s 0
}

# desktops_are NUMBER - both the one that is seen and the window's.
desktops_are() {
    xprop -root _NET_CURRENT_DESKTOP | grep -q "= $1\$" &&
        xprop -id "$(window)" _NET_WM_DESKTOP 2>/dev/null | grep -q "= $1\$"
}

test_starts_hidden_until_launched_again() {
    install_plugins NamedByFolder:Cleaning-Alpha
    start --hidden
    expect "the plugins to be loaded" [ -s "$SOLVANE_FIXTURE_NOTES" ]
    has_no_window || fail "a window shows"
    launch_again --hidden
    sleep 0.3
    has_no_window || fail "a second hidden launch shows the window"
    launch_again
    expect "the window" has_window
    expect "the sidebar" shows "tree item" Alpha
    expect "the window in front" has_focus
    quit
}

test_ends_in_order_when_the_system_asks() {
    local signal
    mkdir -p "${settings%/*}"
    printf '[General]\nslvCore.elog=true\n' >"$settings"
    for signal in TERM INT HUP; do
        start_shown
        xdotool key F1
        # An alert that nobody answers must not hold it up.
        [[ $signal == INT ]] || click "menu item" Solvane
        [[ $signal == INT ]] || click "menu item" "Reset preferences…"
        kill -s "$signal" "$pid"
        expect_end 0
        tail -n 1 "$log" | grep -q 'mndAppDelegate::applicationWillTerminate::1330$' ||
            fail "after $signal the last line of the log: $(tail -n 1 "$log")"
    done
}

test_outlives_a_terminal_that_it_was_told_to_outlive() {
    nohup "$solvane" >>"$HOME/output" 2>&1 &
    pid=$!
    expect "the main window" has_window
    kill -s HUP "$pid"
    sleep 0.3
    is_running || fail "it ended with the terminal"
    kill "$pid"
    expect_end 0
}

test_runs_without_a_session_bus() {
    local address
    local -a started
    for address in "" "unix:path=$HOME/nobody"; do
        DBUS_SESSION_BUS_ADDRESS=$address start
        expect "the window without a bus at \"$address\"" has_window
        xdotool windowactivate "$(window)"
        expect "the window in front" has_focus
        quit
    done

    # One instance all the same: of several at once, and after one that was killed.
    export DBUS_SESSION_BUS_ADDRESS=$address
    start --hidden
    expect "the socket" eval 'test -S "$XDG_RUNTIME_DIR"/solvane-*[0-9]'
    kill -KILL "$pid"
    wait "$pid" 2>/dev/null || true
    for _ in 1 2 3 4; do
        start --hidden
        started+=("$pid")
    done
    expect "one of four to stay" one_runs "${started[@]}"
    launch_again
    expect "its window" has_window
    close_window
    touch "$HOME/some document.txt"
    launch_again "$HOME/some document.txt"
    expect "its window with a document" has_window
    expect "the window in front" has_focus
    quit
}

# one_runs PID... - just one; sets $pid.
one_runs() {
    local each
    local -a running=()
    for each in "$@"; do
        if kill -0 "$each" 2>/dev/null; then
            running+=("$each")
        fi
    done
    pid=${running[0]}
    ((${#running[@]} == 1))
}

# A panel may start after the programs of the session, and start anew.
test_icon_comes_with_a_late_tray() {
    local kind panel
    for kind in embedded notifier; do
        start --hidden
        sleep 1.5 # it looks for a tray after half a second
        for _ in 1 2; do
            "$build/tests/e2e/tray" "$kind" >"$HOME/icons" &
            panel=$!
            expect "an icon: $kind" grep -q icon "$HOME/icons"
            kill "$panel"
            wait "$panel" || true
        done
        kill "$pid"
        expect_end 0
    done
}
