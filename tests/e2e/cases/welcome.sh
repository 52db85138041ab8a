# The store edition greets the user and asks for the home folder.
# shellcheck shell=bash disable=SC2154

start_store() {
    solvane=$build/tests/e2e/store/Solvane.app/Contents/MacOS/solvane
    start
    expect "the main window" has_window
    xdotool windowactivate "$(window)"
    expect "the main window in front" has_focus
}

go_to_folder_page() {
    expect "the greeting" shows dialog "Welcome to Solvane|Solvane" modal
    click "push button" Next
    expect "the folder page" shows "push button" "Select Home Folder"
}

# choose FOLDER - in the dialog that asks for it.
choose() {
    click "push button" "Select Home Folder"
    answer "$1"
}
answer() {
    expect "the folder dialog" has_window "Please select your home directory"
    xdotool windowactivate "$(window "Please select your home directory")"
    expect "the folder dialog in front" has_focus "Please select your home directory"
    import -window root "$pictures/seen-folder-dialog.png"
    xdotool key ctrl+a
    [[ -z $1 ]] || xdotool type "$1"
    xdotool key Return
}

test_asks_until_the_home_folder_is_chosen() {
    local real
    real=$(getent passwd "$(id -u)" | cut -d: -f6)
    start_store
    go_to_folder_page
    import -window root "$pictures/seen-welcome.png"
    # Nothing but the welcome window takes keys.
    xdotool key F1
    choose /tmp
    expect "the alert" shows label ".*You have specified: '/tmp'.*"
    click "push button" OK
    answer "" # where the dialog starts
    expect "the sidebar" shows "tree item" Status selected
    expect "the welcome window to go" shows_not "push button" "Select Home Folder"
    expect "the choice to be stored" grep -qs "slv.sandbox.home=$real" "$settings"
    quit
    start_store
    expect "the sidebar" shows "tree item" Status selected
    shows_not dialog ".*" modal || fail "it asks again"
    quit
}

test_ends_for_a_user_who_refuses() {
    start_store
    go_to_folder_page
    click link "Disallow access and exit"
    expect_end 0
    [[ ! -e $HOME/.local/state/Solvane/plugin-in-progress ]] || fail "a plugin would be accused"
    [[ ! -e $settings ]] || ! grep -q slv.sandbox "$settings" || fail "something was stored"
}

test_quits_while_it_asks() {
    start_store
    go_to_folder_page
    quit
}
