# A plugin that takes the program down is asked about at the next start.
# shellcheck shell=bash disable=SC2154

crumb() { printf '%s' "$HOME/.local/state/Solvane/plugin-in-progress"; }

# expect_question NAME ANSWER - the alert of the start, answered.
expect_question() {
    start
    expect "the question" shows label "Solvane ended unexpectedly while the plugin .*$1.* was .*"
    click "push button" "$2"
    expect_shown
}

test_leaves_out_a_plugin_that_crashes_while_it_is_loaded() {
    install_plugins CrashesInInitialize Good
    start
    expect_end 134

    expect_question CrashesInInitialize "Leave out"
    expect "the other plugin" shows "tree item" Good
    xdotool windowactivate "$(window)"
    expect "the main window in front" has_focus
    quit
    [[ ! -s $(crumb) ]] || fail "a breadcrumb is left after an orderly end"

    # The answer lasts, and the list tells of it.
    start_shown
    quit
    env -u DISPLAY "$solvane" --list-plugins 2>/dev/null |
        grep -q '^left out: .*/CrashesInInitialize.bundle: ' || fail "the list does not tell"
    touch "$plugins/CrashesInInitialize.bundle/Contents/MacOS/CrashesInInitialize.so"
    start
    expect_end 134
}

test_leaves_out_a_plugin_that_crashes_when_all_are_loaded() {
    install_plugins CrashesWhenAllAreLoaded Good
    start
    expect_end 134
    # Not the page that was about to show.
    expect_question CrashesWhenAllAreLoaded "Leave out"
    quit
}

test_takes_no_answer_from_a_session_that_ends() {
    install_plugins CrashesInInitialize
    start
    expect_end 134
    start
    expect "the question" shows "push button" "Leave out"
    kill "$pid"
    # Loading it is what the rest of the start does.
    expect "the program to end" is_gone
    ! grep -qs leftOut "$settings" || fail "nobody answered"
}

test_asks_again_about_a_plugin_that_crashes_when_it_is_shown() {
    install_plugins CrashesOnShow
    start_shown
    click "tree item" Crashing
    expect_end 134

    expect_question CrashesOnShow "Start again"
    click "tree item" Crashing
    expect_end 134

    start --safe-mode
    expect "the question" shows "push button" "Leave out"
    xdotool key Return
    expect "the sidebar's headings" shows "tree item" Cleaning
    shows_not "tree item" Crashing || fail "it shows in safe mode"
    kill "$pid"
    expect_end 0
}
