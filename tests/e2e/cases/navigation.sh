# The sidebar: mouse and keyboard bring plugins to the front, and only plugins.
# shellcheck shell=bash disable=SC2154

install_three_pages() {
    install_plugins NamedByFolder:Cleaning-Alpha NamedByFolder:Cleaning-Beta \
        NamedByFolder:Security-Gamma
}

# expect_page HEADING-NAME - that its row is selected, its view shows and it was told so.
expect_page() {
    expect "$1 to be told that it shows" last_note_is "onViewShow plugin.fixture.$1"
    expect "the row of $1 to be selected" shows "tree item" "${1#*-}" selected
    expect "the view of $1" shows label "$1"
}

test_starts_with_the_status_page() {
    start_shown
    expect "the row of the status plugin to be selected" shows "tree item" Status selected
    expect "the status page" shows label Processor
    local heading
    for heading in Cleaning Optimization Security System Online; do
        expect "the heading $heading" shows "tree item" "$heading"
    done
    quit
}

test_shows_the_page_of_the_clicked_row() {
    local page name
    install_three_pages
    start_shown
    for page in Security-Gamma Cleaning-Alpha Cleaning-Beta; do
        click "tree item" "${page#*-}"
        expect_page "$page"
        for name in Alpha Beta Gamma; do
            [[ $name == "${page#*-}" ]] || shows_not label ".*-$name" ||
                fail "$name still shows beside $page"
        done
    done
    click "tree item" Security
    click "tree item" Support
    expect "the support page" shows "tree item" Support selected
    expect "no fixture to show" last_note_is "onViewHide plugin.fixture.Security-Gamma"
    quit
}

test_walks_over_headings_with_the_arrow_keys() {
    install_three_pages
    start_shown
    click "tree item" Alpha
    expect_page Cleaning-Alpha
    xdotool key Down
    expect_page Cleaning-Beta
    xdotool key Down
    expect_page Security-Gamma
    xdotool key Up
    expect_page Cleaning-Beta
    xdotool key Up
    expect_page Cleaning-Alpha
    # The heading above the first row is nothing to stop at.
    xdotool key Up Down
    expect_page Cleaning-Beta
    quit
}

test_survives_broken_bundles() {
    install_plugins Good ThrowsInCallbacks ThrowsInConstructor ThrowsInInitialize ReturnsNil NoView \
        UnresolvedSymbol NotAPlugin OtherApi
    install_broken_copies
    start_shown
    click "tree item" Throwing
    expect "the page of the plugin that throws" shows label plugin.fixture.ThrowsInCallbacks
    click "tree item" Good
    expect "the page of the good one" shows label plugin.fixture.Good
    local rows
    rows=$(objects "tree item" ".*" | wc -l)
    ((rows == 9)) || fail "five headings and four rows were expected, there are $rows"
    quit
}
