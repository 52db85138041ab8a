#!/usr/bin/env bash
# check-install.sh BUILD_FOLDER - installs a built plugin twice: the folder of added plugins is made,
# and of an older bundle, open as it may be, nothing is left or changed.
set -euo pipefail

HOME=$(mktemp -d)
export HOME
trap 'rm -rf "$HOME"' EXIT
plugins="$HOME/Library/Application Support/Solvane"
bundle=$plugins/SampleEcho.bundle
contents=$bundle/Contents
unset DESTDIR

cmake --install "$1"
touch "$contents/Resources.old"
exec 3<"$contents/MacOS/SampleEcho.so"
before=$(stat -L -c %i /dev/fd/3)
cmake --install "$1"
cmp /dev/fd/3 "$contents/MacOS/SampleEcho.so"
[[ $(stat -c %i "$contents/MacOS/SampleEcho.so") != "$before" ]]
[[ ! -e $contents/Resources.old ]]
[[ -x $contents/MacOS/SampleEcho.so && -f $contents/Info.plist ]]
[[ $(ls -A "$plugins") == SampleEcho.bundle ]]
