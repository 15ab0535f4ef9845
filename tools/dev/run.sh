#!/bin/bash
# ./dev run [--own-home] [--keep] [PROJECT.uap]   and   ./dev shot FILE.png [PROJECT.uap]
# Opens the client on the demo server. Without a display, and for a picture, on a desktop of its own.
. "$(dirname "$0")/common.sh"
. tools/dev/demo.sh

readonly BIN=$ROOT/build/release/bin TREE_SECONDS=30
picture="" keep=false walk=false
client="" desk=""

parse() {
    while [ $# -gt 0 ]; do
        case $1 in
            --own-home) own_home=true ;;
            --keep) keep=true ;;
            --walk) walk=true ;;
            --shot)
                [ $# -gt 1 ] || die "shot needs FILE.png"
                picture=$(realpath -m "$2")
                shift
                ;;
            -*) die "unknown option $1" ;;
            *)
                [ -z "$project" ] || die "one project at a time"
                [ -f "$1" ] || die "there is no project $1"
                project=$(realpath "$1")
                ;;
        esac
        shift
    done
}

clean_up() {
    trap '' INT TERM
    if [ -n "$client" ] && kill -0 "$client" 2>/dev/null; then kill "$client"; fi
    [ -z "$desk" ] || tools/ui/desk.sh stop --dir "$desk"
    stop_demo_server
}

start_client() {
    cd "$BIN"
    ./tavelin "$project" >"$DEMO/client.log" 2>&1 &
    client=$!
    cd "$ROOT"
}

# The status of the client, also when it was ended by a signal.
wait_for_client() {
    local status=0
    wait "$client" || status=$?
    client=""
    return $status
}

fail_with_log() {
    echo "---- the client's output:" >&2
    tail -n 50 "$DEMO/client.log" >&2
    die "$1"
}

ui() { tools/ui/uidrive.py --app "$client" "$@"; }

wait_for_tree() {
    local end=$((SECONDS + TREE_SECONDS))
    say "waiting for the address space"
    until ui --timeout 1 table "Address Space" --rows 5 2>/dev/null | grep -q 'Objects'; do
        kill -0 "$client" 2>/dev/null || fail_with_log "the client has ended"
        if ((SECONDS >= end)); then
            ui dialogs >&2 || true
            ui shot "$DEMO/failed.png" >&2 || true
            fail_with_log "the address space did not show within $TREE_SECONDS s"
        fi
        sleep 0.3
    done
}

# The splash screen stays above the main window for some seconds.
take_picture() {
    local tenths=100
    while [ "$(ui windows | wc -l)" -gt 1 ] && ((tenths-- > 0)); do sleep 0.1; done
    mkdir -p "$(dirname "$picture")"
    ui shot "$picture" --in "window:*" >/dev/null || fail_with_log "there is no window to take a picture of"
    say "picture: $picture"
}

# As a user closes it, so that the way out runs too; an unanswered question ends it the hard way.
close_client() {
    ui key alt+F4 || true
    local tenths=50
    while kill -0 "$client" 2>/dev/null && ((tenths-- > 0)); do sleep 0.1; done
    kill -0 "$client" 2>/dev/null && fail_with_log "the client did not close"
    wait_for_client || fail_with_log "the client closed with status $?"
}

run_on_virtual_desktop() {
    rm -rf "$DEMO/home-virtual"
    prepare_home home-virtual
    local environment
    environment=$(tools/ui/desk.sh start --size 1440x900) # in a folder of its own: sockets need a short path
    eval "$environment"
    desk=$DESK_DIR
    start_client
    wait_for_tree
    if $walk; then
        tools/ui/walkwindows.py --app "$client"
        return
    fi
    take_picture
    if $keep; then
        say "display $DISPLAY; Ctrl+C ends it"
        wait_for_client || true
    else
        close_client
    fi
}

run_on_display() {
    prepare_home home
    start_client
    wait_for_client || fail_with_log "the client ended with status $?"
}

parse "$@"
tools/dev/setup.sh
configure_whole release
build release tavelin
mkdir -p "$DEMO"
trap clean_up EXIT
trap 'exit 130' INT TERM
prepare_project
if $walk || [ -n "$picture" ] || [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    picture=${picture:-$DEMO/screenshot.png}
    run_on_virtual_desktop
else
    run_on_display
fi
