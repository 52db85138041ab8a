# What a plugin can do to the window: sheets, drawers, its size, pages.
# shellcheck shell=bash disable=SC2154

open_panels() {
    install_plugins Panels NamedByFolder:Security-Gamma
    start_shown
    click "tree item" Panels
    expect "the page" shows "push button" "Begin sheet"
}

# drawn_window - "x y width height" with the borders that the window manager adds.
drawn_window() {
    local id
    id=$(window)
    {
        xwininfo -id "$id" | sed -n 's/^ *\(Absolute upper-left [XY]\|Width\|Height\): *//p'
        xprop -id "$id" _NET_FRAME_EXTENTS | sed 's/.*= //; s/,/\n/g'
    } | xargs | awk '{ print $1 - $5, $2 - $7, $3 + $5 + $6, $4 + $7 + $8 }'
}
drawn_window_is() { [[ $(drawn_window) == "$*" ]]; }

test_sheet_keeps_the_window_to_itself() {
    open_panels
    click "push button" "Begin sheet"
    expect "a modal dialog" shows dialog "Fixture sheet" modal
    expect "its button" shows "push button" "End sheet"
    import -window root "$picture.sheet.png" && mv "$picture.sheet.png" "$pictures/seen-sheet.png"
    # Neither the mouse nor a menu's key leads elsewhere.
    click "tree item" Gamma
    xdotool key F1
    expect "the first control to have the keyboard" shows "check box" Caches focused
    xdotool key Tab
    expect "the second one" shows text Comment focused
    xdotool key Tab Tab
    expect "the first one again" shows "check box" Caches focused
    shows "tree item" Panels selected || fail "the sidebar went elsewhere while the sheet shows"
    click "push button" "End sheet"
    expect "the sheet to end" shows_not dialog "Fixture sheet"
    click "tree item" Gamma
    expect "the other page" shows label Security-Gamma
    quit
}

test_drawers_open_and_close_at_every_edge() {
    local edge
    open_panels
    for edge in 0 1 2 3; do
        click "push button" "Drawer $edge"
        expect "the drawer $edge" shows label "Inside the drawer"
        sleep 0.3
        import -window root "$pictures/seen-drawer-$edge.png"
        click "push button" "Drawer $edge"
        expect "the drawer to close" shows_not label "Inside the drawer"
    done
    quit
}

test_fills_the_screen_and_goes_back() {
    local before
    open_panels
    before=$(drawn_window)
    click "push button" "Maximize it"
    expect "the window to fill the screen" drawn_window_is 0 0 1280 900
    click "push button" "Restore it"
    expect "the window to be as it was" drawn_window_is "$before"
    # The same out of the state that the window manager knows as maximised.
    wmctrl -ir "$(window)" -b add,maximized_vert,maximized_horz
    expect "the window to be maximised" drawn_window_is 0 0 1280 900
    click "push button" "Restore it"
    expect "the window to be as it was" drawn_window_is "$before"
    quit
    # And when the window manager was the first.
    open_panels
    before=$(drawn_window)
    wmctrl -ir "$(window)" -b add,maximized_vert,maximized_horz
    expect "the window to be maximised" drawn_window_is 0 0 1280 900
    click "push button" "Restore it"
    expect "the window to be as it was at first" drawn_window_is "$before"
    quit
}

test_outlives_what_a_page_throws() {
    open_panels
    click "push button" Throw
    click "tree item" Gamma
    expect "the other page" shows label Security-Gamma
    quit
}

maps_engine() { grep -q WebEngine "/proc/$pid/maps"; }

test_loads_the_web_engine_with_the_first_page() {
    ! ldd "$solvane" | grep WebEngine || fail "the program is linked with the web engine"
    open_panels
    click "push button" "End spinner"
    click "push button" "Drawer 2"
    click "push button" "Drawer 2"
    quit
    open_panels
    ! maps_engine || fail "the engine was loaded before there was a page to show"
    click "push button" "Begin spinner"
    expect "the engine to be loaded" maps_engine
    sleep 2
    import -window root "$pictures/seen-spinner.png"
    is_running || fail "the program ended"
    click "push button" "End spinner"
    sleep 0.5
    quit
}
