# Extended logging and the reset of the preferences, through their menus and alerts.
# shellcheck shell=bash disable=SC2154

toggle_extended_logging() {
    click "menu item" Help
    click "menu item" "Extended logging"
    click "menu item" "Enable extended logging"
}

enable_extended_logging() {
    toggle_extended_logging
    click "push button" Enable
    expect "the setting to be stored" grep -qs elog "$settings"
}

reset_preferences() {
    click "menu item" Solvane
    click "menu item" "Reset preferences…"
}

test_extended_logging_writes_until_the_end() {
    start_shown
    toggle_extended_logging
    click "push button" Cancel
    expect "the alert to close" shows_not "push button" Cancel
    [[ ! -e $log && ! -e $settings ]] || fail "cancelled, and yet something was written"

    enable_extended_logging
    xdotool key F1
    expect "a line in the log" grep -qs 'mndAppDelegate::showPlugin::216 plugin.support$' "$log"
    [[ $(stat -c %a "${settings%/*}") == 700 ]] || fail "others can hold the lock of the settings"
    click "menu item" Help
    click "menu item" "Extended logging"
    expect "the check mark" shows "menu item" "Enable extended logging" checked
    xdotool key Escape Escape Escape
    quit
    tail -n 1 "$log" | grep -q 'mndAppDelegate::applicationWillTerminate::1330$' ||
        fail "the last line of the log: $(tail -n 1 "$log")"

    # What was stored counts from the next start on.
    start_shown
    expect "the start in the log" grep -qs '::847 Loaded v[0-9]* (2)$' "$log"
    toggle_extended_logging
    expect "the log to be removed with its setting" [ ! -e "$log" ]
    quit
    [[ ! -e $log ]] || fail "the log came back: $(cat "$log")"
}

test_reset_of_the_preferences() {
    start_shown
    enable_extended_logging
    cp "$settings" "$HOME/before"

    reset_preferences
    expect "what the reset means" shows label ".*Would you like to proceed[?]"
    # Cancel is what the key that is pressed without reading answers.
    expect "the button" shows "push button" Reset
    xdotool key Return
    expect "the alert to close" shows_not "push button" Reset
    cmp -s "$settings" "$HOME/before" || fail "cancelled, and yet the settings changed"
    is_running || fail "cancelled, and yet the program ended"

    reset_preferences
    click "push button" Reset
    expect_end failure
    ! grep -q = "$settings" || fail "settings are left: $(cat "$settings")"
    ! grep -q applicationWillTerminate "$log" || fail "it ended by the long way"
}
