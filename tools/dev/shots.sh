#!/bin/bash
# ./dev shots DIR [SETTING...]: a picture of every window, in each of four settings, and sheets of them to look at.
# ./dev shots --manual: the pictures of the manual's pages anew.
. "$(dirname "$0")/common.sh"
. tools/dev/demo.sh

# NAME PALETTE SCALE LANGUAGE WINDOW: the narrow ones are those in which texts would be cut
readonly SETTINGS=("light-100-en Light 100 en 1440x900" "dark-100-de Dark 100 de 1024x700"
    "light-200-en Light 200 en 1024x700" "dark-200-de Dark 200 de 1024x700")
readonly MANUAL_PICTURES=$ROOT/app/resources/help/images
# PAGE PICTURE
readonly PAGES=("addressspace dock-address-space-dock-widget" "attributes dock-attributes-dock-widget"
    "certificates dialog-certificates-0" "connect dialog-addserver-0" "dataaccess document-data-access-view"
    "datalogger document-data-logger-view" "devices document-devices-view" "doctor dialog-diagnoseserver"
    "events document-event-view" "gds document-gds-view-push-model-" "history document-history-trend-view"
    "imageviewer document-image-viewer" "log dock-log-dock-widget" "palette dialog-palette"
    "performance document-performance-view" "references dock-references-dock-widget"
    "search dock-find-node-dock-widget" "serverdiagnostics document-server-diagnostics-view"
    "settings dialog-configure-0")
desk=""

clean_up() {
    trap '' INT TERM
    [ -z "$desk" ] || tools/ui/desk.sh stop --dir "$desk"
    stop_demo_server
}

set_up_home() { # PALETTE SCALE LANGUAGE
    rm -rf "$DEMO/home-shots"
    prepare_home home-shots
    local settings=$HOME/.config/korvanda/tavelin/tavelin.ini
    sed -i "s/^\[General\]$/&\nAppearance.Palette=$1\nAppearance.Scale=$2\nAppearance.Language=$3/" "$settings"
}

take() { # NAME PALETTE SCALE LANGUAGE WINDOW
    local folder=$target/$1
    say "pictures: $1"
    rm -rf "$folder"
    mkdir -p "$folder"
    set_up_home "$2" "$3" "$4"
    # the desktop has a size of its own for programs that have none set
    env -u QT_SCALE_FACTOR build/release/bin/tavelin_pictures "$folder" "$project" "$5" 2>"$DEMO/pictures.log" ||
        { tail -n 20 "$DEMO/pictures.log" >&2 && die "the pictures of $1 could not be made"; }
    make_sheets "$1" "$folder"/*.png
}

# Nine at a time: of all at once the tool takes more memory than it may.
make_sheets() { # NAME PICTURE...
    local name=$1 sheet=0
    shift
    while [ $# -gt 0 ]; do
        montage "${@:1:9}" -label '%t' -tile 3x3 -geometry 1000x700+6+6 \
            "$(printf '%s/sheet-%s-%02d.png' "$target" "$name" "$sheet")"
        sheet=$((sheet + 1))
        shift $(($# < 9 ? $# : 9))
    done
}

# Few colours and pixels: they are part of the program. Of a window with a document only the document, which is
# between the docks.
take_for_manual() {
    local page words crop
    take manual Light 100 en 1700x900
    mkdir -p "$MANUAL_PICTURES"
    for page in "${PAGES[@]}"; do
        read -ra words <<<"$page"
        crop=()
        [[ "${words[1]}" != document-* ]] || crop=(-crop 960x580+304+62 +repage)
        convert "$target/manual/${words[1]}.png" "${crop[@]}" -resize '720x720>' -dither None -colors 64 \
            -define png:exclude-chunks=date,time "PNG8:$MANUAL_PICTURES/${words[0]}.png"
    done
}

manual=false
case ${1:-} in
    --manual)
        manual=true
        set -- "$DEMO/manual"
        ;;
    "" | -*) die "shots needs a folder, or --manual" ;;
esac
target=$(realpath -m "$1")
shift
tools/dev/setup.sh
build release tavelin_pictures
mkdir -p "$DEMO" "$target"
trap clean_up EXIT
trap 'exit 130' INT TERM
prepare_project
environment=$(tools/ui/desk.sh start --size 2880x1800)
eval "$environment"
desk=$DESK_DIR
if $manual; then
    take_for_manual
    say "pictures of the manual: $MANUAL_PICTURES"
    exit
fi
for setting in "${SETTINGS[@]}"; do
    read -ra words <<<"$setting"
    [ $# -eq 0 ] || [[ " $* " == *" ${words[0]} "* ]] || continue
    take "${words[@]}"
done
say "look at them: $target"
