# The Debian packages Solvane needs, and the way to get them. Sourced by run.sh, test.sh and .ci/run.
# shellcheck shell=bash disable=SC2034

# What turns the tree into a program.
SOLVANE_BUILD_PACKAGES=(
    g++ cmake ninja-build pkg-config
    qt6-base-dev qt6-svg-dev qt6-webengine-dev qt6-webchannel-dev
    libexpat1-dev libicu-dev libxcb1-dev nlohmann-json3-dev
)

# What the program loads or reads while it runs, beyond the libraries it is linked with.
SOLVANE_RUN_PACKAGES=(
    libqt6svg6 libqt6webenginewidgets6 libqt6webenginecore6-bin qt6-image-formats-plugins
    fonts-dejavu-core
)

# A display for machines that have none.
SOLVANE_DISPLAY_PACKAGES=(xvfb)

# The tests drive real windows, buses and bundles, and hold the sources to their rules.
SOLVANE_TEST_PACKAGES=(
    libgtest-dev libgmock-dev
    clang-format clang-tidy lld
    at-spi2-core dbus dbus-x11 desktop-file-utils python3 libglib2.0-bin
    fonts-noto-cjk imagemagick openbox wmctrl x11-utils xauth xclip xdotool
)

SOLVANE_BENCHMARK_PACKAGES=(libxdamage-dev dbus openbox x11-utils xdotool)

say() {
    printf '%s\n' "$*" >&2
}

# Prints those of the packages that are not installed.
missing_packages() {
    local package
    for package in "$@"; do
        [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] ||
            printf '%s\n' "$package"
    done
}

# Without lists, or with lists older than a package's name, apt knows no candidate for it.
has_candidates() {
    local package
    for package in "$@"; do
        apt-cache policy "$package" 2>/dev/null | grep -q 'Candidate: [^(]' || return 1
    done
}

as_root() {
    if ((EUID == 0)); then
        "$@"
    else
        sudo "$@"
    fi
}

apt_get() {
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -q -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3 "$@" </dev/null >&2
}

# install_packages PACKAGE... - installs what is missing and nothing else. Mirrors fail now and then,
# and lists go stale between two runs: both are worth another try.
install_packages() {
    if ! command -v dpkg-query >/dev/null; then
        say "This is not a Debian system: what follows needs the equivalents of: $*"
        return
    fi
    local missing
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0

    if ((EUID != 0)) && ! command -v sudo >/dev/null; then
        say "Some packages are missing and there is no sudo. Run this as root, then try again:"
        say "    apt-get update && apt-get install ${missing[*]}"
        return 1
    fi
    say "Installing: ${missing[*]}"
    if ! has_candidates "${missing[@]}"; then
        apt_get update || true
    fi
    local attempt
    for attempt in 1 2 3; do
        if apt_get install -y --no-install-recommends "${missing[@]}"; then
            return 0
        fi
        ((attempt < 3)) || break
        say "Installing failed, trying again in $((attempt * 10)) seconds."
        sleep $((attempt * 10))
        apt_get update || true
    done
    say "These packages could not be installed: $(missing_packages "${missing[@]}" | tr '\n' ' ')"
    return 1
}

# build_preset ROOT PRESET TARGET [CONFIGURE ARGUMENT...] - configures and builds on every core. The
# output goes to the error stream: the standard output belongs to the program that is started
# afterwards.
build_preset() {
    local root=$1 preset=$2 target=$3
    shift 3
    (
        cd "$root"
        cmake --preset "$preset" "$@"
        cmake --build --preset "$preset" --target "$target" --parallel "$(nproc)"
    ) >&2
}

# with_display COMMAND... - runs the command on a virtual display of its own; answers its status.
with_display() {
    local folder server status=0
    folder=$(mktemp -d)
    mkfifo "$folder/number"
    Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp \
        3>"$folder/number" >"$folder/log" 2>&1 </dev/null &
    server=$!
    # shellcheck disable=SC2064
    trap "kill $server 2>/dev/null || true; rm -rf '$folder'" EXIT
    local number=
    # Opened for both directions: a server that never opens its end must not block ours.
    read -r -t 30 number <>"$folder/number" || true
    if [[ -z $number ]]; then
        say "The virtual display did not start:"
        cat "$folder/log" >&2
        return 1
    fi
    mkdir -m 700 "$folder/runtime"
    DISPLAY=:$number XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$folder/runtime} "$@" || status=$?
    return $status
}
