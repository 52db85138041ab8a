# The sheets of the application menu, opened, used and closed by mouse and by keyboard.
# shellcheck shell=bash disable=SC2154

entry() { echo "$HOME/.config/autostart/com.solvane.Solvane.desktop"; }

# add_browser - one that notes the addresses it is given.
add_browser() {
    mkdir -p "$HOME/bin"
    printf '#!/bin/sh\nprintf "%%s\\n" "$1" >>"%s/addresses"\n' "$HOME" >"$HOME/bin/xdg-open"
    chmod +x "$HOME/bin/xdg-open"
    touch "$HOME/addresses"
    PATH=$HOME/bin:$PATH
}
last_address() { tail -n 1 "$HOME/addresses"; }

stores_delay() { grep -qs "slvCritical.delay=int:$1\$" "$settings"; }
sheet_is_gone() { shows_not dialog ".*"; }

# choose_entry NUMBER - of the application menu, by keyboard, counted from the top.
choose_entry() {
    local -i i
    xdotool key alt
    xdotool key Down
    expect "the menu" shows "menu item" "About Solvane"
    for ((i = 1; i < $1; ++i)); do
        xdotool key Down
    done
    xdotool key Return
}

test_preferences_by_keyboard() {
    start_shown
    xdotool key ctrl+comma
    expect "the preferences" shows dialog Preferences modal
    expect "the start at login first" shows "check box" "Start Solvane at login" focused
    xdotool key space
    expect "the entry for the start at login" test -s "$(entry)"
    desktop-file-validate "$(entry)" || fail "desktops do not accept: $(cat "$(entry)")"
    xdotool key Tab
    expect "the slider" shows slider "Forced delay" focused
    xdotool key Right Right
    expect "the delay to be stored" stores_delay 12
    expect "the delay to be shown" shows label 12s
    xdotool key Escape
    expect "the sheet to close" sheet_is_gone
    quit

    # What was stored counts after a restart, and after an end without warning.
    start_shown
    choose_entry 2
    expect "the box to be checked" shows "check box" "Start Solvane at login" checked
    expect "the stored delay" shows label 12s
    xdotool key Tab Home
    expect "the least delay" stores_delay 2
    kill -KILL "$pid"
    wait "$pid" 2>/dev/null || true
    start_shown
    xdotool key ctrl+comma
    expect "the least delay" shows label 2s
    expect "the first control" shows "check box" "Start Solvane at login" focused
    xdotool key space
    expect "the entry to be removed" test ! -e "$(entry)"
    xdotool key Tab Tab
    expect "the close label" shows link Close focused
    xdotool key Return
    expect "the sheet to close" sheet_is_gone
    quit
}

test_preferences_by_mouse() {
    start_shown
    click "menu item" Solvane
    click "menu item" "Preferences…"
    click "check box" "Start Solvane at login"
    expect "the entry for the start at login" test -s "$(entry)"
    # As the desktop's own settings switch it off.
    sed -i 's/^X-GNOME-Autostart-enabled=.*/X-GNOME-Autostart-enabled=false/' "$(entry)"
    click link Close
    expect "the sheet to close" sheet_is_gone
    xdotool key ctrl+comma
    expect "the box without a mark" shows "check box" "Start Solvane at login"
    sleep 0.3
    shows_not "check box" "Start Solvane at login" checked || fail "a disabled entry shows as on"
    local x y width height
    read -r x y width height < <(objects slider "Forced delay")
    xdotool mousemove $((x + width - 6)) $((y + 9)) click --repeat 6 --delay 50 1
    expect "the longest delay" stores_delay 15
    expect "the longest delay to be shown twice" eval '(($(objects label 15s | wc -l) == 2))'
    click link Close
    expect "the sheet to close" sheet_is_gone
    quit
}

test_settings_that_cannot_be_used() {
    mkdir -p "${settings%/*}"
    # Cut off in the middle, and full of something else.
    printf '[General]\nslvCritical.delay=int:7\nslvCore.elog=bo' >"$settings"
    start_shown
    xdotool key ctrl+comma
    expect "what could be read" shows label 7s
    quit
    printf '[General]\nslvCritical.delay=@Variant(\\0\\0\\xff)\nslvCore.elog=int:oops\nAppleLanguages=real:x' \
        >"$settings"
    start_shown
    xdotool key ctrl+comma
    expect "the usual delay" shows label 10s
    quit
}

test_about() {
    add_browser
    start_shown
    click "menu item" Solvane
    click "menu item" "About Solvane"
    expect "the sheet" shows dialog "About Solvane" modal
    expect "the version" shows label "Version [0-9]+"
    expect "the edition" shows label "Web edition"
    click "push button" OK
    expect "the sheet to close" sheet_is_gone
    click "menu item" Solvane
    click "menu item" "About Solvane"
    click link www.solvane.example
    expect "the sheet to close" sheet_is_gone
    expect "the web site" eval '[[ $(last_address) == http://www.solvane.example ]]'

    local key
    for key in Return Escape space; do
        choose_entry 1
        expect "OK to have the keyboard" shows "push button" OK focused
        xdotool key "$key"
        expect "$key to close the sheet" sheet_is_gone
    done
    quit
}

test_feedback_sends_what_support_shows() {
    local pair value
    add_browser
    start_shown
    click "menu item" Solvane
    click "menu item" "Send feedback…"
    expect "the feedback page" grep -qs '^https://feedback\.solvane\.example/inapp-feedback-v5?appid=anon-' \
        "$HOME/addresses"
    xdotool key F1
    expect "the support page" shows "tree item" Support selected
    click link "Show or hide what is sent"
    expect "the values" shows label "Mode: PRO"
    sleep 0.3
    import -window root "$pictures/seen-sent.png"
    # What is shown is what was sent; free space changes while this runs.
    for pair in "appid=Anonymous identifier" lang=Language appver=Version apped=Edition mode=Mode \
        "cpu=Processors and MHz" "ram=Memory in MB" model=Model os=System "runpath=Where Solvane is"; do
        value=$(names label "${pair#*=}: .*" | head -1)
        value=${value#*: }
        value=${value/#–/}
        [[ "$(last_address)&" == *[?\&]"${pair%%=*}=${value// /%20}&"* ]] ||
            fail "${pair#*=} \"$value\" is not in $(last_address)"
    done

    # Without a browser there is an answer, too, whoever finds out.
    local way
    for way in "opener fails" "no opener"; do
        if [[ $way == "no opener" ]]; then
            rm "$HOME/bin/xdg-open"
        else
            printf '#!/bin/sh\nexit 3\n' >"$HOME/bin/xdg-open"
        fi
        click "menu item" Solvane
        click "menu item" "Send feedback…"
        expect "the address: $way" shows label ".*No web browser could be opened.*inapp-feedback-v5"
        click "push button" OK
        expect "the alert to close" shows_not label ".*No web browser could be opened.*"
    done
    quit
}

is_minimized() { xprop -id "$1" WM_STATE | grep -q Iconic; }
is_maximized() { xprop -id "$1" _NET_WM_STATE | grep -q MAXIMIZED; }
is_not_maximized() { ! is_maximized "$1"; }

test_the_other_entries() {
    local id
    start_shown
    id=$(window)
    click "menu item" Window
    click "menu item" Maximize
    expect "the window to be large" is_maximized "$id"
    click "menu item" Window
    click "menu item" Maximize
    expect "the window to be as it was" is_not_maximized "$id"
    click "menu item" Window
    click "menu item" "Bring all to front"
    click "menu item" Solvane
    expect "the menu" shows "menu item" "Check for updates…"
    shows_not "menu item" "Check for updates…" enabled || fail "there is no updater"
    xdotool key Escape
    click "menu item" Window
    click "menu item" Minimize
    expect "the window to be minimised" is_minimized "$id"
    bring_back "$id"
    xdotool key ctrl+m
    expect "the window to be minimised" is_minimized "$id"
    bring_back "$id"
    click "menu item" Help
    click "menu item" "Solvane help"
    expect "the support page" shows "tree item" Support selected
    click "menu item" Solvane
    click "menu item" "Quit Solvane"
    expect_end 0
}

# by_keys MENU KEY... - opens the menu, counted from the left, by keyboard, and goes on with the keys.
by_keys() {
    local -i i
    xdotool key alt
    xdotool key Down
    expect "the first menu" shows "menu item" "About Solvane"
    for ((i = 1; i < $1; ++i)); do
        xdotool key Right
    done
    expect "menu $1" shows "menu item" "$(sed -n "$1p" <<<$'About Solvane\nMinimize\nExtended logging')"
    xdotool key "${@:2}"
}

test_the_other_entries_by_keyboard() {
    local id
    add_browser
    start_shown
    id=$(window)
    by_keys 1 Down Down Return
    expect "the question" shows "push button" Reset
    xdotool key Escape
    expect "the alert to close" shows_not "push button" Reset
    by_keys 1 Down Down Down Return
    expect "the feedback page" eval '[[ $(last_address) == https://feedback.* ]]'
    by_keys 2 Down Return
    expect "the window to be large" is_maximized "$id"
    by_keys 2 Down Return
    expect "the window to be as it was" is_not_maximized "$id"
    by_keys 2 Down Down Return
    by_keys 2 Return
    expect "the window to be minimised" is_minimized "$id"
    bring_back "$id"

    by_keys 3 Down Right Down Return
    expect "that there is no log" shows label "There is currently no logfile available to view."
    xdotool key Return
    expect "the alert to close" shows_not label "There is currently no logfile available to view."
    by_keys 3 Down Right Return
    expect "the warning" shows "push button" Enable
    xdotool key Tab space
    expect "the setting to be stored" grep -qs elog "$settings"
    by_keys 3 Return
    expect "the support page" shows "tree item" Support selected
    expect "the log" test -s "$log"
    by_keys 3 Down Right Down Return
    expect "the log to be opened" eval '[[ $(last_address) == *"$log" ]]'
    printf '#!/bin/sh\nexit 3\n' >"$HOME/bin/xdg-open"
    by_keys 3 Down Right Down Return
    expect "where the log is" shows label "There is currently no logfile .*$log"
    xdotool key Return
    expect "the alert to close" shows_not label "There is currently no logfile .*"
    by_keys 1 Up Return
    expect_end 0
}

toggle_maximized() {
    click "menu item" Window
    click "menu item" Maximize
}

test_the_window_comes_back_to_its_place() {
    local geometry
    start_shown
    xdotool windowsize --sync "$(window)" 1011 611 windowmove --sync "$(window)" 111 122
    expect "the window in its place" is_in_place
    geometry=$(objects frame Solvane)
    quit
    start_shown
    [[ $geometry == *" 1011 611" && $(objects frame Solvane) == "$geometry" ]] ||
        fail "it was at $geometry, and is at $(objects frame Solvane)"

    # The size it had before it filled the screen outlives that it was hidden.
    toggle_maximized
    expect "the window to be large" is_maximized "$(window)"
    xdotool key ctrl+w
    expect "the window to close" has_no_window
    "$solvane"
    expect_shown
    is_maximized "$(window)" || fail "it does not fill the screen any more"
    toggle_maximized
    expect "the window as it was" eval '[[ $(objects frame Solvane) == "$geometry" ]]'
    quit
}

is_wide() { xdotool getwindowgeometry "$(window)" | grep -q "Geometry: $1x"; }
has_low_menus() { objects "menu item" Solvane | awk '{ exit !($4 < 32) }'; }

test_large_texts_enlarge_the_window_as_one() {
    local size enlarged width
    add_browser
    printf '#!/bin/sh\nenv >"%s/environment"\n' "$HOME" >"$HOME/bin/xdg-open"
    mkdir -p "$HOME/.config"
    # The last screen has no room: there texts stay small.
    while read -r size enlarged width; do
        rm -f "$HOME/environment"
        printf '[General]\nfont=DejaVu Sans,%d,-1,5,50,0,0,0,0,0\n' "$size" >"$HOME/.config/kdeglobals"
        XDG_CURRENT_DESKTOP=KDE KDE_SESSION_VERSION=5 QT_SCALE_FACTOR=$enlarged start
        expect "the sidebar" shows "tree item" Support
        expect "the window's width at $size points" is_wide "$width"
        expect "menus in their row" has_low_menus
        xdotool windowactivate "$(window)"
        expect "the main window in front" has_focus
        choose_entry 4
        expect "the browser" test -s "$HOME/environment"
        grep -qx "QT_SCALE_FACTOR=$enlarged" "$HOME/environment" || fail "other programs are enlarged"
        quit
    done <<<"11 1 980
13 1 1158
24 1.6 1203"
}
