#!/bin/bash
# ./dev run [--own-home] [--keep] [PROJECT.uap]   and   ./dev shot FILE.png [PROJECT.uap]
# Opens the client on the demo server. Without a display, and for a picture, on a desktop of its own.
. "$(dirname "$0")/common.sh"

readonly DEMO=$ROOT/build/demo BIN=$ROOT/build/release/bin TREE_SECONDS=30
picture="" project="" own_home=false keep=false walk=false
client="" desk="" server=false

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
    ! $server || tests/support/demoserver.sh stop "$DEMO/server"
}

# A project that asks for the demo server gets it, under the address that it has this time.
prepare_project() {
    local template=${project:-tools/dev/demo.uap.in} url
    grep -q '@DEMO_SERVER_URL@' "$template" || return 0
    say "starting the demo server"
    server=true
    tests/support/demoserver.sh start "$DEMO/server" "$DEMO/server.json" $$ >/dev/null
    url=$(python3 -c 'import json, sys; print(json.load(open(sys.argv[1]))["endpointUrl"])' "$DEMO/server.json")
    say "demo server: $url"
    project=$DEMO/$(basename "$template" .in)
    sed "s|@DEMO_SERVER_URL@|$url|" "$template" >"$project"
}

# What the first start would ask for: nobody may be there to fill in the dialog.
prepare_certificate() {
    local own=$HOME/.config/korvanda/tavelin/PKI/own host
    [ ! -f "$own/certs/tavelin.der" ] || return 0
    host=$(hostname)
    mkdir -p "$own/certs" "$own/private"
    chmod 700 "$own/private"
    (
        umask 077
        openssl req -x509 -newkey rsa:2048 -nodes -days 1825 -sha256 -outform DER \
            -subj "/C=DE/O=Korvanda/CN=Tavelin@$host" \
            -addext "basicConstraints=critical,CA:FALSE" \
            -addext "keyUsage=critical,nonRepudiation,digitalSignature,keyEncipherment,dataEncipherment,keyCertSign" \
            -addext "extendedKeyUsage=critical,serverAuth,clientAuth" \
            -addext "subjectAltName=URI:urn:$host:Korvanda:Tavelin@$host,DNS:$host" \
            -keyout "$own/private/tavelin_key.pem" -out "$own/certs/tavelin.der" 2>"$DEMO/openssl.log"
    ) || { cat "$DEMO/openssl.log" >&2 && die "no certificate could be made for the demo"; }
}

# A home of its own keeps the demo away from the user's settings and certificates; the questions of a first
# start are answered in it, since nobody may be there to do so.
prepare_home() { # NAME
    $own_home && return 0
    export HOME=$DEMO/$1
    unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME
    prepare_certificate
    rm -rf "$HOME/.config/korvanda/tavelin/recovery" # the demo is ended by a signal, and nobody may be there to answer
    local settings=$HOME/.config/korvanda/tavelin/tavelin.ini
    [ ! -f "$settings" ] || return 0
    mkdir -p "$(dirname "$settings")"
    printf '%s\n' '[General]' 'AutomaticUpdate.CheckForUpdates=false' '' \
        '[AutomaticUpdate]' 'AutomaticUpdate.CheckForUpdates=false' '' '[QlumTipWindow]' 'ShowTip=false' >"$settings"
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
