# The Touch Bar at the foot of the window: clicks and keys are taps.
# shellcheck shell=bash disable=SC2154

# in_strip NAME [STATE] - prints where the button stands in the strip below the content.
in_strip() {
    objects "push button" "$1" "${2:-showing}" | awk -v foot="$(foot)" '$2 >= foot { print }'
}
foot() { xwininfo -id "$(window)" | awk '/Absolute upper-left Y/ { y = $NF } /Height:/ { print y + $2 - 60 }'; }
has_button() { [[ -n $(in_strip "$@") ]]; }
has_no_button() { ! has_button "$@"; }
tap() {
    expect "the button \"$1\" on the bar" has_button "$1"
    local x y width height
    read -r x y width height < <(in_strip "$1")
    xdotool mousemove $((x + width / 2)) $((y + height / 2)) click 1
}
buttons_are() { [[ $(in_strip '.*' | wc -l) == "$1" ]]; }

install_neighbours() {
    install_plugins NamedByFolder:Cleaning-Cleaners@plugin.cleaners \
        NamedByFolder:Optimization-Memory@plugin.memboost NamedByFolder:System-Tweaks@plugin.tweaks \
        NamedByFolder:Online-Updater@plugin.updater "$@"
}

test_shows_nothing_unless_asked() {
    install_neighbours
    start_shown
    click "tree item" Cleaners
    expect "the page" shows label "Cleaning-Cleaners.*"
    has_no_button Status || fail "there is a bar that nobody asked for"
    quit
}

test_taps_on_icons_navigate() {
    install_neighbours NamedByFolder:Security-Network@plugin.network
    start_shown --touch-bar
    expect "a button for each of the seven plugins" buttons_are 7
    local name
    for name in Cleaners Network Memory Updater Tweaks Support Status; do
        tap "$name"
        expect "the row of $name to be selected" shows "tree item" "$name" selected
        expect "the system bar" buttons_are 7
    done
    import -window root "$pictures/seen-touchbar.png"
    # The same by keyboard: from the sidebar backwards, or forwards, Tab comes by.
    local -i i
    for ((i = 0; i < 30; ++i)); do
        xdotool key Tab
        sleep 0.1
        has_button Cleaners focused && break
    done
    has_button Cleaners focused || fail "Tab does not lead to the bar"
    xdotool key Right Return
    expect "the row of Network to be selected" shows "tree item" Network selected
    expect "the keyboard to stay on the bar" has_button Network focused
    quit
}

test_missing_plugin_shifts_the_buttons_after_it() {
    install_neighbours
    SOLVANE_TOUCH_BAR=1 start_shown
    expect "a button for each of the six plugins" buttons_are 6
    tap Cleaners
    expect "the row of Cleaners to be selected" shows "tree item" Cleaners selected
    tap Memory # asks for the network plugin, which is not there
    sleep 0.5
    shows "tree item" Cleaners selected || fail "the third button led somewhere"
    tap Updater
    expect "its neighbour to be selected" shows "tree item" Memory selected
    quit
}

test_plugin_bar_stays_until_the_next_move() {
    install_plugins Panels
    start_shown --touch-bar
    click "tree item" Panels
    click "push button" "Change bar"
    tap Two
    expect "the tap to reach the plugin" shows label "Tapped Two"
    click "tree item" Support
    expect "the system bar after a click" has_no_button Two
    click "tree item" Panels
    click "push button" "Change bar"
    expect "the plugin bar" has_button Two
    click "push button" "Begin sheet"
    click "push button" "End sheet"
    expect "the system bar after a sheet" has_no_button Two
    click "push button" "Change bar"
    expect "the plugin bar" has_button Two
    click "push button" "Show status"
    expect "the system bar of the status page" has_no_button Two
    quit
}
