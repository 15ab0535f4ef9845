#!/bin/bash
# ./dev shots DIR [NAME...]
# Pictures of every window, page and dialog of the client on the demo project, in a folder for each look that it
# has to be readable in. Minutes for each; NAME is one of the looks below.
. "$(dirname "$0")/common.sh"

readonly LOOKS="light-100-en dark-200-de dark-100-de light-200-en"

shots() { # DIR LOOK
    local palette scale language size=1440x900
    IFS=- read -r palette scale language <<<"$2"
    [ "$scale" = 100 ] || size=2880x1800
    rm -rf "${1:?}/$2"
    mkdir -p "$1/$2"
    tools/dev/run.sh --walk --shots "$1/$2" --language "$language" --size "$size" \
        --set "Appearance.Palette=${palette^}" --set "Appearance.Scale=$scale" --set "Appearance.Language=$language"
}

[ $# -gt 0 ] || die "usage: ./dev shots DIR [NAME...]; names: $LOOKS"
folder=$(realpath -m "$1")
shift
[ $# -gt 0 ] || read -ra looks <<<"$LOOKS"
failed=false
for look in "${looks[@]:-$@}"; do
    say "$look"
    shots "$folder" "$look" || failed=true
done
! $failed || die "some windows have no name or were not reached; the pictures are in $folder"
say "pictures: $folder"
