# Sourced by the scripts that open the client on the demo server: the server, a project for it, a home of its own.
# shellcheck shell=bash

readonly DEMO=$ROOT/build/demo
project="" own_home=false server=false

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

stop_demo_server() { ! $server || tests/support/demoserver.sh stop "$DEMO/server"; }

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
