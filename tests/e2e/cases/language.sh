# The language file: the user's, English in its place, or none.
# shellcheck shell=bash disable=SC2154

test_german_menus() {
    first_heading=Bereinigung
    LANG=de_DE.UTF-8 start_shown
    click "menu item" Fenster
    expect "the menu in German" shows "menu item" "Alle nach vorne bringen"
    xdotool key Escape
    quit
}

test_no_path_is_a_language() {
    LANGUAGE=../Resources/de:/etc/passwd LANG=en_US.UTF-8 start_shown
    expect "the English menus" shows "menu item" Window
    quit
}

copy_application() {
    cp -R "$build/Solvane.app" "$HOME/"
    solvane=$HOME/Solvane.app/Contents/MacOS/solvane
    resources=$HOME/Solvane.app/Contents/Resources
}

# expect_fatal_alert NUMBER - and the end after its only button.
expect_fatal_alert() {
    start
    expect "the alert" has_window "Fatal error \\($1\\)"
    expect "its text" shows label "Unable to load language file[.] Please re-install Solvane and if the problem persists visit https?://[^ ]*"
    click "push button" OK
    expect_end 0
}

test_unreadable_file_falls_back_to_english() {
    copy_application
    echo "no dictionary {" >"$resources/de.strings"
    LANG=de_DE.UTF-8 start_shown
    expect "the English menus" shows "menu item" Window
    quit
}

test_no_language_file_is_fatal() {
    copy_application
    rm "$resources/en.strings"
    LANG=fi_FI.UTF-8 expect_fatal_alert 1
    echo "no dictionary {" >"$resources/en.strings"
    LANG=fi_FI.UTF-8 expect_fatal_alert 2
}
