# A plugin that takes the program down is asked about at the next start.
# shellcheck shell=bash disable=SC2154

crumb() { printf '%s' "$HOME/.local/state/Solvane/plugin-in-progress"; }

# expect_question NAME ANSWER - the alert of the start, answered.
expect_question() {
    start
    expect "the question" shows label "Solvane did not end as it should, and the plugin .*$1.* was .*"
    click "push button" "$2"
}

test_leaves_out_a_plugin_that_crashes_while_it_is_loaded() {
    install_plugins "CrashesInInitialize:Crash & burn" Good
    start
    expect_end 134
    # The safe answer is to try it again, and safe mode if that goes wrong, too.
    start
    expect "the question" shows "push button" "Leave out"
    xdotool key Return
    expect_end 134
    start
    expect "the question" shows "push button" "Leave out"
    xdotool key Return
    expect "the offer" shows "push button" "Start normally"
    xdotool key Return
    expect_shown
    shows_not "tree item" Good || fail "it is no safe mode"
    kill -KILL "$pid"
    expect_end 137
    start
    expect_end 134

    expect_question "Crash & burn" "Leave out"
    expect_shown
    expect "the other plugin" shows "tree item" Good
    xdotool windowactivate "$(window)"
    expect "the main window in front" has_focus
    quit
    [[ ! -s $(crumb) ]] || fail "a breadcrumb is left after an orderly end"

    # The answer lasts, and the list tells of it.
    start_shown
    env -u DISPLAY "$solvane" --list-plugins 2>/dev/null |
        grep -q '^left out: .*/Crash & burn.bundle: ' || fail "the list does not tell"
    # It can be taken back from the menu, and a new build is tried, too.
    click "menu item" Help
    click "menu item" "Left-out plugins"
    click "menu item" "Start .*Crash & burn.* again"
    expect "the confirmation" shows label ".*Crash & burn.* is started again the next time .*"
    xdotool key Return
    expect "the confirmation to close" shows_not label ".*Crash & burn.* is started again .*"
    quit
    start
    expect_end 134
    expect_question "Crash & burn" "Leave out"
    expect_shown
    quit
    touch "$plugins/Crash & burn.bundle/Contents/MacOS/CrashesInInitialize.so"
    start
    expect_end 134
}

test_leaves_out_a_plugin_that_crashes_when_all_are_loaded() {
    install_plugins CrashesWhenAllAreLoaded Good
    start
    expect_end 134
    # Not the page that was about to show.
    expect_question CrashesWhenAllAreLoaded "Leave out"
    expect_shown
    quit
}

test_asks_about_nothing_that_comes_with_it() {
    mkdir -p "$(dirname "$(crumb)")"
    # Entered, and never left.
    printf %s "$build/Solvane.app/Contents/Resources/Status.bundle" >"$(crumb)"
    truncate -s 8200 "$(crumb)"
    start_shown
    quit
    [[ ! -s $(crumb) ]] || fail "a breadcrumb is left after an orderly end"
}

test_takes_no_answer_from_a_session_that_ends() {
    install_plugins CrashesInInitialize
    start
    expect_end 134
    start
    expect "the question" shows "push button" "Leave out"
    kill "$pid"
    expect_end 0
    ! grep -qs leftOut "$settings" || fail "nobody answered"
    expect_question CrashesInInitialize "Leave out"
    expect_shown
    quit
}

# ends HARM STATUS - of the run in which the plugin does that, and who is asked about.
ends() {
    export SOLVANE_FIXTURE_HARM=$1
    start
    case $1 in
        loop)
            expect "the loop" grep -q "in a loop" "$HOME/output"
            kill "$pid"
            ;;
        *end)
            expect_shown
            xdotool key ctrl+q
            ;;
    esac
    expect_end "$2"
    SOLVANE_FIXTURE_HARM=none expect_question Misbehaves "Start again"
    expect_shown
    quit
}

test_asks_about_the_plugin_whose_code_it_was() {
    # Loaded later, and shown, when the thread of the first one throws.
    install_plugins Misbehaves NamedByFolder:Cleaning-Zeta NamedByFolder:Cleaning-Zoe
    ends thread 134
    ends "toolkit's thread" 134
    ends "null call" 139
    ends recursion 139
    ends exit 3
    ends loop 0
    ends "crash at the end" 134
    ends "hang at the end" 0
}

test_ends_at_once_without_its_display() {
    local number
    mkfifo "$HOME/display"
    exec 5<>"$HOME/display"
    Xvfb -displayfd 5 -screen 0 800x600x24 -nolisten tcp -noreset >"$HOME/xvfb" 2>&1 &
    local server=$!
    read -r -t 20 number <&5
    install_plugins NamedByFolder:Cleaning-Alpha
    DISPLAY=:$number start
    expect "the plugins" grep -q onAllPluginsLoaded "$SOLVANE_FIXTURE_NOTES"
    kill -KILL "$server"
    expect_end 1
    [[ ! -s $(crumb) ]] || fail "it is nobody's fault"
}

test_asks_again_about_a_plugin_that_crashes_when_it_is_shown() {
    install_plugins CrashesOnShow
    start_shown
    click "tree item" Crashing
    expect_end 134

    expect_question CrashesOnShow "Start again"
    expect_shown
    click "tree item" Crashing
    expect_end 134

    start --safe-mode
    expect "the question" shows "push button" "Leave out"
    xdotool key Return
    # Nobody offers what is there already.
    expect "the sidebar's headings" shows "tree item" Cleaning
    shows_not "tree item" Crashing || fail "it shows in safe mode"
    kill "$pid"
    expect_end 0
}
