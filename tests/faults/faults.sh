# What a user needs with each fault of the machine: see run. The table is at the end.
# shellcheck shell=bash disable=SC2154

shim=$build/tests/faults/fault_shim.so

# prepare [new] - a home with two pages and, unless it is new, with settings, a log and a list, whose
# ends show whether they are whole.
prepare() {
    is_new=${1:-}
    install_plugins NamedByFolder:Cleaning-Alpha Faults
    export SOLVANE_FIXTURE_NOTES=$SOLVANE_E2E_SCRATCH/notes.$BASHPID TMPDIR=$HOME # out of faults' reach
    rm "$HOME/notes"
    if [[ ! $is_new ]]; then
        mkdir -p "${settings%/*}" "${log%/*}"
        printf '[General]\naaa=1\nslvCore.elog=bool:true\nzzz=1\n' >"$settings"
        echo "the first line" >"$log"
        yes old | head -n 2000 >"$HOME/list"
    fi
}

# use_it - a row is clicked, and its page shows.
use_it() {
    expect_shown
    click "tree item" Alpha
    expect "the page of the row" shows label Cleaning-Alpha
}

# write_all - the plugin has everything written, the user changes a preference.
write_all() {
    click "tree item" Faults
    click "push button" Write
    expect "the plugin to be done" shows label 'list [01] login [01]'
    change_preference
}

change_preference() {
    xdotool key ctrl+comma
    expect "the preferences" shows slider .+
    xdotool key Tab Right Escape
    expect "the preferences to close" shows_not slider .+
}

# expect_whole - old or new, nothing between, and nothing beside.
expect_whole() {
    local name
    if [[ -e $settings ]]; then
        grep -q '^\[General\]$' "$settings" || fail "half a settings file: $(cat "$settings")"
        [[ $is_new ]] || [[ $(grep -cE '^(aaa|zzz)=1$' "$settings") == 2 ]] ||
            fail "settings are lost: $(cat "$settings")"
        [[ -z $(tail -c 1 "$settings") ]] || fail "the last setting is cut off"
    fi
    if [[ -e $log ]]; then
        ! grep -vE '^ *$|^the first line$|^[0-9: A-Za-z]+ (line [0-9]+ x{60}|mndAppDelegate::.*[0-9.)s])$' "$log" ||
            fail "half a line in the log"
        [[ -z $(tail -c 1 "$log") ]] || fail "the last line of the log is cut off"
    fi
    if [[ -e $HOME/list || ! $is_new ]]; then
        cmp -s "$HOME/list" <(yes old | head -n 2000) ||
            cmp -s "$HOME/list" <(yes new | head -n 2000) ||
            fail "half a list: $(wc -c "$HOME/list")"
    fi
    while read -r name; do
        case $name in
            ./.config/Solvane/solvane.conf | ./Library/Logs/solvane.log | ./list | ./output) ;;
            ./.config/autostart/com.solvane.Solvane.desktop)
                tail -n 1 "$HOME/$name" | grep -q X-Solvane || fail "half a login entry" ;;
            ./.local/state/Solvane/plugin-in-progress)
                # A zero at the start makes it empty where it cannot be cut.
                [[ ! $(head -c 1 "$HOME/$name" | tr -d '\0') ]] || fail "a breadcrumb is left" ;;
            *) fail "a stray file: $name" ;;
        esac
    done < <(cd "$HOME" && find . -type f ! -path '*.bundle/*' ! -path './.cache/*')
}

# disk ERROR CALLS WHEN - WHEN is "start" or "later", "new" for a home without any folder.
disk() {
    local met=$SOLVANE_E2E_SCRATCH/met.$BASHPID begun=$SOLVANE_E2E_SCRATCH/begun.$BASHPID
    local -A numbers=([EIO]=5 [EACCES]=13 [ENOSPC]=28 [EROFS]=30)
    local calls=$2 when=$3
    [[ $calls == all ]] && calls="write open mkdir rename sync truncate"
    prepare "$([[ $when != new ]] || echo new)"
    [[ $when == later ]] || touch "$begun"
    LD_PRELOAD=$shim SOLVANE_FAULT=${numbers[$1]} SOLVANE_FAULT_CALLS=" $calls " \
        SOLVANE_FAULT_BELOW=$HOME SOLVANE_FAULT_WHILE=$begun SOLVANE_FAULT_MET=$met start
    use_it
    touch "$begun"
    write_all
    quit
    [[ -s $met ]] || fail "the fault was never met"
    expect_whole
    printf '    met %d times: %s\n' "$(wc -l <"$met")" "$(cut -d' ' -f1 "$met" | sort | uniq -c | xargs)"
}

# What is set last reaches a disk that takes longer than plugins get for their end.
slow_disk() {
    prepare
    LD_PRELOAD=$shim SOLVANE_SLOW_SYNC=6 SOLVANE_FAULT_BELOW=$HOME start
    use_it
    quit
    grep -q '^slvCore.window=' "$settings" || fail "the window's place is lost: $(cat "$settings")"
    expect_whole
}

# --- Other faults --------------------------------------------------------------------------------

# ends_well_or_works - the sidebar works, or there was a message and a status of its own.
ends_well_or_works() {
    if poll "$patience" eval 'is_gone || has_window' && is_running; then
        use_it
        quit
    else
        expect_end failure
        grep -q '^solvane: ' "$HOME/output" || fail "it ended without a word of its own"
    fi
}

few_descriptors_from_the_start() {
    local count
    prepare
    for count in "$@"; do
        rm -f "$HOME/output"
        (ulimit -n "$count"; exec "$solvane") >"$HOME/output" 2>&1 &
        pid=$!
        ends_well_or_works
    done
}

# The number of open files is all there may be, from then on.
no_descriptor_left() {
    prepare
    start
    use_it
    local open=(/proc/"$pid"/fd/*)
    prlimit --pid "$pid" --nofile=$((${#open[@]} - 2))
    click "tree item" "Status|System status"
    sleep 1.5
    click "tree item" Faults
    click "push button" Write
    expect "the plugin to be done" shows label 'list 0 login 0'
    click "tree item" Alpha
    expect "the page of the row" shows label Cleaning-Alpha
    quit
    expect_whole
}

# without_home ENVIRONMENT... - HOME is unset or useless; what would be written elsewhere is not.
without_home() {
    local met=$SOLVANE_E2E_SCRATCH/met.$BASHPID account
    account=$(getent passwd "$(id -u)" | cut -d: -f6)
    prepare
    (
        export LD_PRELOAD=$shim SOLVANE_FAULT=30 SOLVANE_FAULT_WHILE=/ SOLVANE_FAULT_MET=$met
        export SOLVANE_FAULT_CALLS=" write open mkdir rename "
        export SOLVANE_FAULT_BELOW="$account:/.config:/.local:/Library:/.cache:$HOME"
        exec env "$@" "$solvane"
    ) >"$HOME/output" 2>&1 &
    pid=$!
    expect_shown
    click "tree item" Support
    change_preference
    quit
    # As long as the account has a home, that is where things go.
    if [[ $* != HOME=/* ]]; then
        grep -q " $account/" "$met" || fail "it wrote nothing to $account"
        ! grep -E ' /(\.|Library)' "$met" || fail "it wrote to the root folder"
    fi
    expect_whole
}

jumping_clock() {
    prepare
    LD_PRELOAD=$shim SOLVANE_CLOCK_JUMPS=5 start
    use_it
    click "tree item" Status
    sleep 2
    use_it
    quit
}

# Without the bus there is nobody to ask where things are: they are where they were with one.
no_bus() {
    local x y width height
    prepare
    start
    use_it
    read -r x y width height < <(objects "tree item" Alpha)
    quit
    : >"$SOLVANE_FIXTURE_NOTES"
    DBUS_SESSION_BUS_ADDRESS=unix:path=/nobody DBUS_SYSTEM_BUS_ADDRESS=unix:path=/nobody start
    expect "the main window" has_window
    xdotool windowactivate "$(window)"
    expect "the main window in front" has_focus
    expect "the plugins" grep -q onAllPluginsLoaded "$SOLVANE_FIXTURE_NOTES"
    clicked() {
        xdotool mousemove $((x + width / 2)) $((y + height / 2)) click 1
        last_note_is "onViewShow plugin.fixture.Cleaning-Alpha"
    }
    expect "the page of the row" clicked
    quit
}

no_fonts() {
    prepare
    echo '<fontconfig></fontconfig>' >"$SOLVANE_E2E_SCRATCH/no-fonts"
    FONTCONFIG_FILE=$SOLVANE_E2E_SCRATCH/no-fonts start
    use_it
    click "tree item" Status
    quit
}

no_display() {
    prepare
    DISPLAY=:9999 start
    ends_well_or_works
}

small_stacks() {
    prepare
    start
    use_it
    click "tree item" Faults
    click "push button" "Small stacks"
    expect "all calls" shows label '[0-9]+ calls from small stacks'
    names label '.* calls from small stacks'
    use_it
    quit
}

# --- The table -----------------------------------------------------------------------------------

add_fault() {
    local name
    name=$(tr -cs 'a-zA-Z0-9\n' _ <<<"$*")
    name=${name:0:50}
    eval "test_${name%_}() { $*; }"
}

add_disk_faults() {
    local error call when
    for error in ENOSPC EIO EACCES EROFS; do
        for when in start later new; do
            for call in all write open rename; do
                add_fault disk "$error" "$call" "$when"
            done
        done
        add_fault disk "$error" mkdir new # there are folders in an old home
    done
    for error in ENOSPC EIO; do
        add_fault disk "$error" sync start
        add_fault disk "$error" truncate start
    done
}

if [[ $SOLVANE_E2E_LONG ]]; then
    add_disk_faults
    add_fault slow_disk
    add_fault few_descriptors_from_the_start {4..40} # with 3 no library can be loaded
else
    add_fault disk ENOSPC all new
    add_fault disk ENOSPC write later
    add_fault disk EIO rename later
    add_fault disk EACCES all later
    add_fault disk EROFS all start
    add_fault few_descriptors_from_the_start 4 31 32
fi
add_fault no_descriptor_left
add_fault without_home -u HOME
add_fault without_home HOME=relative
add_fault without_home HOME=/dev/null/home
add_fault jumping_clock
add_fault no_bus
add_fault no_display
add_fault no_fonts
add_fault small_stacks
