#!/usr/bin/env bash
# Installs the build into a scratch prefix and checks what a desktop would find there.
#
#     check-desktop-files.sh BUILD-FOLDER
set -euo pipefail

build=${1:?The build folder is missing}
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
DESTDIR=$stage cmake --install "$build" --prefix /opt/solvane >/dev/null
prefix=$stage/opt/solvane

fail() {
    echo "$*" >&2
    exit 1
}

desktop=$prefix/share/applications/com.solvane.Solvane.desktop
service=$prefix/share/dbus-1/services/com.solvane.Solvane.service
desktop-file-validate --no-hints "$desktop"
grep -qx 'Name=com.solvane.Solvane' "$service" || fail "The service has another name than the desktop file."
grep -qx 'Exec=/opt/solvane/bin/solvane' "$service" || fail "The service starts something else."

program=$(readlink -f "$prefix/bin/solvane")
[[ $program == "$(readlink -f "$prefix")/lib/solvane/Solvane.app/Contents/MacOS/solvane" ]] ||
    fail "bin/solvane leads to $program"
[[ -x $program ]] || fail "$program is no program"
for resource in Info.plist Resources/en.strings; do
    [[ -s $prefix/lib/solvane/Solvane.app/Contents/$resource ]] || fail "$resource is not installed"
done

# The desktop file speaks the languages the application speaks.
for language in "$prefix"/lib/solvane/Solvane.app/Contents/Resources/*.strings; do
    name=$(basename "$language" .strings)
    case $name in
        en) continue ;;
        pt-BR) name=pt_BR ;;
        pt-PT) name=pt ;;
        zh-Hans) name=zh ;;
        zh-Hant) name=zh_TW ;;
        *-*) name=${name%-*} ;; # which stands for all its regions
    esac
    grep -q "^Comment\\[$name\\]=." "$desktop" || fail "The desktop file has no Comment[$name]"
done
