# Every plugin with what became of it, without a display.
# shellcheck shell=bash disable=SC2154

# diagnose ARGUMENT... - sets $lines and $status.
diagnose() {
    status=0
    lines=$(env -u DISPLAY timeout 30 "$solvane" "$@" 2>>"$HOME/output") || status=$?
}

install_good_and_broken() {
    install_plugins Good Hidden OddHeading Twin ThrowsInConstructor ThrowsInInitialize ReturnsNil \
        UnresolvedSymbol NotAPlugin OtherApi NotADelegate
    install_broken_copies
}

test_lists_what_was_loaded_and_what_was_refused() {
    install_good_and_broken
    diagnose --list-plugins
    ((status == 0)) || fail "the status is $status"

    local id pattern
    for id in plugin.status plugin.support plugin.fixture.{Good,Hidden,OddHeading}; do
        grep -q "^$id  .*\.bundle\$" <<<"$lines" || fail "$id is not listed: $lines"
    done
    while read -r pattern; do
        grep -Eq "^refused: [^:]*/$pattern" <<<"$lines" || fail "no line \"$pattern\" in: $lines"
    done <<'END'
Garbage.bundle: .*/Info.plist: .
NotAPlugin.bundle: not a plugin of this host: .*org.example.SomethingElse/1
OtherApi.bundle: built for host API 5, this host has 6
ReturnsNil.bundle: pluginInitialize: returned nothing
ThrowsInConstructor.bundle: .*constructor of the fixture
ThrowsInInitialize.bundle: .*pluginInitialize: of the fixture
Truncated.bundle: .*cut off
Twin.bundle: .*"plugin.fixture.Good" is already loaded
UnresolvedSymbol.bundle: .*Fixture::symbolThatNobodyHas\(char const\*\)
END
    (($(grep -c ^refused: <<<"$lines") == 9)) || fail "more was refused: $lines"
}

test_checks_one_bundle() {
    local bundle expected pattern
    install_good_and_broken
    install_plugins SlowToShow
    while read -r bundle expected pattern; do
        diagnose --check-plugin "$plugins/$bundle.bundle"
        ((status == expected)) || fail "$bundle: status $status: $lines"
        [[ $lines =~ ^$bundle\.bundle:\ $pattern ]] || fail "$bundle: $lines"
        (($(wc -l <<<"$lines") == 1)) || fail "$bundle: more than one line: $lines"
    done <<'END'
Good 0 no problems found; "plugin.fixture.Good" loads in [0-9.]+ ms
Truncated 1 .*Good.so is not a plugin module: it is cut off
Garbage 1 .*Info.plist: .
ThrowsInInitialize 1 it threw an exception
Missing 1 .*is no folder
NotADelegate 1 what mndPluginDelegate has is never called
SlowToShow 1 onViewShow took [0-9.]+ ms: .*50 ms is the limit
END
}

test_calls_what_the_host_calls_and_says_what_is_odd() {
    local bundle line
    install_plugins Good
    ln -s "$fixtures/Good/Good.bundle" "$HOME/Good.bundle"
    export SOLVANE_FIXTURE_HARM=thread
    while read -r bundle line; do
        [[ -e $HOME/$bundle.bundle ]] || cp -R "$fixtures/$bundle/$bundle.bundle" "$HOME/"
        diagnose --check-plugin "$HOME/$bundle.bundle"
        ((status == 1)) || fail "$bundle: status $status: $lines"
        grep -Eqx "$bundle.bundle: $line" <<<"$lines" || fail "$bundle: no \"$line\" in: $lines"
    done <<'END'
ThrowsInCallbacks onAllPluginsLoaded threw an exception: callback of the fixture
ThrowsInCallbacks onViewShow threw an exception: callback of the fixture
ThrowsInCallbacks onViewHide threw an exception: callback of the fixture
CrashesOnShow it took the program down: Aborted
SlowToShow onViewShow took [0-9.]+ ms: .*50 ms is the limit
OddHeading its heading "Oddities" is none of the host's: .*
WrongTypes "id" is no QString: .*
WrongTypes "view" is no QWidget: .*
Good it is a link: .*
Misbehaves it took the program down: Aborted
END
    cp -R "$fixtures/NamedByFolder/NamedByFolder.bundle" "$HOME/Cleaning-Alpha.bundle"
    diagnose --check-plugin "$HOME/Cleaning-Alpha.bundle"
    [[ $(tail -n 2 "$SOLVANE_FIXTURE_NOTES") == onViewShow*$'\n'onViewHide* ]] || fail "a shown page is not hidden"
    mv "$HOME/ThrowsInCallbacks.bundle" "$plugins/"
    diagnose --check-plugin "$plugins/ThrowsInCallbacks.bundle"
    (($(grep -c "onAllPluginsLoaded" <<<"$lines") == 1)) || fail "installed, told twice: $lines"
    mv "$HOME/Misbehaves.bundle" "$plugins/"
    export SOLVANE_FIXTURE_HARM=exit
    diagnose --check-plugin "$plugins/Misbehaves.bundle"
    [[ $lines == "Misbehaves.bundle: it took the program down: it ended with status 3" ]] ||
        fail "installed, exits: $lines"
    unset SOLVANE_FIXTURE_HARM
    chmod o+w "$plugins/Good.bundle/Contents/Info.plist"
    diagnose --list-plugins
    [[ $lines == *"refused: $plugins/Good.bundle: others could have changed it: everybody may write $plugins/Good.bundle/Contents/Info.plist"* ]] ||
        fail "writable: $lines"
}

test_says_its_line_of_a_bundle_that_ends_the_process() {
    install_plugins CrashesInInitialize Good
    mv "$plugins/CrashesInInitialize.bundle" "$HOME/"
    diagnose --check-plugin "$HOME/CrashesInInitialize.bundle" "$plugins/Good.bundle"
    ((status == 1)) || fail "status $status: $lines"
    [[ $lines =~ ^"CrashesInInitialize.bundle: it took the program down: Aborted"$'\n'"Good.bundle: no problems found"[^$'\n']*$ ]] ||
        fail "the lines: $lines"

    mv "$HOME/CrashesInInitialize.bundle" "$plugins/"
    diagnose --check-plugin "$plugins/Good.bundle"
    ((status == 1)) || fail "installed: status $status: $lines"
    [[ $lines == "Good.bundle: not checked: $plugins/CrashesInInitialize.bundle took the program down: Aborted" ]] ||
        fail "installed: $lines"
    diagnose --list-plugins
    ((status == 1)) || fail "listed: status $status: $lines"
    [[ $lines == "solvane: $plugins/CrashesInInitialize.bundle took the program down: Aborted" ]] ||
        fail "listed: $lines"
    diagnose --without-plugin CrashesInInitialize --check-plugin "$plugins/Good.bundle"
    ((status == 0)) || fail "without it: status $status: $lines"
}

test_says_when_nothing_has_the_name_that_is_left_out() {
    local name told
    install_plugins Good
    while read -r name told; do
        : >"$HOME/output"
        diagnose --list-plugins --without-plugin "$name"
        ((status == 0)) || fail "$name: status $status"
        (($(grep -cFx "solvane: no plugin is named \"$name\"" "$HOME/output") == told)) ||
            fail "$name: $(cat "$HOME/output")"
    done <<'END'
nobody 1
Good 0
Good.bundle 0
plugin.fixture.Good 0
plugin.status 0
END
}

test_no_name_steers_the_terminal() {
    local task
    install_plugins $'NotAPlugin:Red\e[31m\nline'
    for task in --list-plugins --check-plugin="$plugins/"$'Red\e[31m\nline.bundle'; do
        diagnose "$task"
        [[ $lines == *"Red�[31m�line.bundle: "* && $lines != *$'\e'* ]] || fail "$task: $lines"
    done
}

test_ends_with_plugins_whose_threads_wait() {
    install_plugins JoinsThread Good
    diagnose --list-plugins
    ((status == 0)) || fail "installed: status $status"
    mv "$plugins/JoinsThread.bundle" "$plugins/Good.bundle" "$HOME/"
    diagnose --check-plugin "$HOME/JoinsThread.bundle" "$HOME/Good.bundle"
    ((status == 0)) || fail "checked: status $status: $lines"
}

test_ends_without_texts() {
    cp -r "${solvane%/Contents/*}" "$HOME/"
    rm "$HOME"/Solvane.app/Contents/Resources/*.strings
    status=0
    env -u DISPLAY timeout 20 "$HOME/Solvane.app/Contents/MacOS/solvane" --list-plugins \
        >"$HOME/listed" 2>"$HOME/errors" || status=$?
    ((status == 0)) || fail "the status is $status"
    grep -q '^Fatal error (1): ' "$HOME/errors" || fail "no word of the fatal error"
}

test_checks_several_bundles_and_a_new_build_of_an_installed_one() {
    install_plugins Good
    cp -r "$plugins/Good.bundle" "$HOME/Good.bundle"
    ln -s "$HOME/Good.bundle" "$plugins/Linked.bundle"
    diagnose --check-plugin "$plugins/Linked.bundle"
    [[ $lines == "Linked.bundle: it is a link"* ]] || fail "a link: $lines"
    diagnose --check-plugin "$HOME/Good.bundle/"
    ((status == 0)) || fail "status $status: $lines"
    mv "$HOME/Good.bundle" "$HOME/Other.bundle"
    diagnose --check-plugin "$HOME/Other.bundle"
    [[ $lines == "Other.bundle: \"plugin.fixture.Good\" is already the id of $plugins/Good.bundle: one of them is refused" ]] ||
        fail "a second one: $lines"
    install_plugins NamedByFolder:Cleaning-Good
    diagnose --list-plugins
    [[ $lines == *$'\n'"note: $plugins/Cleaning-Good.bundle: its row \"Good\" below \"Cleaning\" has the titles of that of $plugins/Good.bundle: "* ]] ||
        fail "two of the same titles: $lines"
    rm -r "$plugins/Cleaning-Good.bundle"
    install_plugins ReturnsNil
    diagnose --check-plugin "$plugins/Good.bundle" "$plugins/ReturnsNil.bundle"
    ((status == 1)) || fail "status $status: $lines"
    (($(wc -l <<<"$lines") == 2)) || fail "not a line for each: $lines"
}

test_prints_what_plugins_do_wrong_when_asked() {
    local line
    install_plugins Misbehaves ReturnsNil
    export SOLVANE_FIXTURE_HARM="wrong calls"
    start_shown --debug
    for line in 'showPlugin: no plugin has the id "plugin.nobody"' 'endModalSheet: ends more sheets .*' \
        'beginModalSheet: dropped: .*' 'newFactoryInstance: no class is named "NoClass"' \
        'pluginSetBadge:value: is for the main thread' 'pluginSetProcessing:value: no plugin .*' \
        'onAllPluginsLoaded of .*: thrown on purpose' \
        'keeps the main loop waiting for more than 50 ms'; do
        expect "$line" grep -qx "solvane: debug: plugin.fixture.Misbehaves: $line" "$HOME/output"
    done
    grep -q '^solvane: debug: ReturnsNil: refused: ' "$HOME/output" || fail "the refused bundle"
    # What was refused is told on the page, too.
    click "tree item" Support
    expect "the refused bundle" shows label "ReturnsNil: Refused: .*"
    quit
    : >"$HOME/output"
    start_shown
    quit
    # Qt's own bridge to assistive technology may have a word of its own.
    ! grep -v 'qt.accessibility' "$HOME/output" || fail "it is not silent"
}
