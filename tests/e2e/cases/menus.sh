# The menu bar, by mouse and by keyboard.
# shellcheck shell=bash disable=SC2154

# What every menu offers while the window shows.
entries_of() {
    case $1 in
        Solvane)
            printf '%s\n' "About Solvane" "Preferences…" "Reset preferences…" "Send feedback…" \
                "Check for updates…" "Hide Solvane" "Quit Solvane"
            ;;
        Window) printf '%s\n' Minimize Maximize "Bring all to front" ;;
        Help) printf '%s\n' "Solvane help" "Extended logging" ;;
    esac
}

# Whether the picture of a rectangle holds both light and dark enough for a text to be read.
is_readable() {
    local spread
    spread=$(import -window root -crop "$3x$4+$1+$2" -colorspace Gray \
        -format '%[fx:100*(maxima-minima)]' info:)
    ((${spread%.*} >= 45))
}

entry_is_readable() {
    local x y width height
    read -r x y width height < <(objects "menu item" "$1")
    [[ -n $x ]] && is_readable "$x" "$y" "$width" "$height"
}

expect_open_menu() {
    local menu=$1 entry
    while read -r entry; do
        expect "\"$entry\" to be readable in the menu $menu" entry_is_readable "$entry"
    done < <(entries_of "$menu")
}

test_open_by_mouse() {
    local menu
    start_shown
    for menu in Solvane Window Help; do
        click "menu item" "$menu"
        expect_open_menu "$menu"
        xdotool key Escape
        expect "the menu $menu to close" shows_not "popup menu" ""
    done
    quit
}

test_open_by_keyboard() {
    local menu
    start_shown
    xdotool key alt
    xdotool key Down
    for menu in Solvane Window Help; do
        expect_open_menu "$menu"
        xdotool key Right
    done
    xdotool key Escape Escape
    expect "the menus to close" shows_not "popup menu" ""
    xdotool key F10
    expect_open_menu Solvane
    xdotool key Escape Escape
    expect "the menus to close" shows_not "popup menu" ""
    # Help, by its key.
    xdotool key F1
    expect "the support page" shows "tree item" Support selected
    quit
}

# place - "x y width height " of the window without its borders.
place() { xwininfo -id "$(window)" | awk '/Absolute upper-left|Width|Height/ { printf "%s ", $NF }'; }
# shellcheck disable=SC2053 # a pattern
is_at() { [[ $(place) == $1 ]]; }

test_bring_the_closed_window_back() {
    local placed
    start_shown
    wmctrl -ir "$(window)" -e 0,40,60,900,600
    expect "another size" is_at "* 900 600 "
    placed=$(place)
    expect "no entry to show what shows" shows_not "menu item" "Show main window" enabled
    xdotool key ctrl+h
    expect "the window to hide" has_no_window
    is_running || fail "hiding ended the program"
    "$solvane" >>"$HOME/output" 2>&1
    expect "the window to come back" has_window
    expect "the window where the user had put it" is_at "$placed"
    quit
}
