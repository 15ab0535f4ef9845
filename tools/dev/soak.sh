#!/bin/bash
# ./dev soak [NAME [OPTIONS]]: what takes minutes or hours by its nature. Without a name all of them run, the last for
# up to half an hour, the others for a few minutes; OPTIONS go to the program and take the place of those that stand here.
. "$(dirname "$0")/common.sh"

readonly SOAKS="names reconnects rounds faults recording disconnects"

# All windows of the client, as a screen reader meets them: three minutes.
soak_names() { tools/dev/run.sh --walk; }

# Connections one after another: threads, descriptors and memory are the same after them.
soak_reconnects() { # [NUMBER]
    TAVELIN_RECONNECTS=${1:-10000} build/release/bin/test_stack_links --gtest_filter='*ReconnectsWithoutGrowth'
}

# Sessions that connect and disconnect.
soak_rounds() { session "${@:---rounds=1000}"; }

# Sessions with subscriptions, over a relay that spoils the traffic in every way.
soak_faults() { session "${@:---minutes=3}"; }

# A minute of 50,000 records a second into each kind of file; then a process that records is killed again and again, and
# its file is looked at.
soak_recording() { # [ROUNDS]
    BENCH_SECONDS=60 build/release/bin/bench_datalogger
    build/release/bin/soak_recording --rounds "${1:-1000}" --seed "${SOAK_SEED:-$RANDOM}"
}

# Sessions that are disconnected at random moments under every kind of fault; the program has a server of its own.
soak_disconnects() {
    local options
    mapfile -t options < <(printf '%s\n' "${@/=/$'\n'}")
    [ $# -gt 0 ] || options=()
    build/release/bin/soak_disconnects --seed "${SOAK_SEED:-$RANDOM}" "${options[@]}"
}

# Against a demo server of its own, which it also restarts in between.
session() { # OPTIONS of soak_session, as --NAME VALUE or --NAME=VALUE
    local dir url port again stop restart options server=(node "$ROOT/demoserver/ctl.mjs")
    dir=$(mktemp -d)
    stop=$(printf '%q ' "${server[@]}" stop "$dir/info")
    # shellcheck disable=SC2064 # the folder as it is now
    trap "$stop >/dev/null 2>&1 || true; rm -rf '$dir'" EXIT
    server+=(start --info "$dir/info" --log "$dir/log" --pki "$dir/pki" --host 127.0.0.1)
    url=$("${server[@]}" --port 0 | tail -n 1)
    port=$(sed -E 's|.*:([0-9]+)/.*|\1|' <<<"$url")
    again=$(printf '%q ' "${server[@]}" --port "$port")
    # on a busy machine a start may take longer than it is given
    restart="$stop >/dev/null
        for n in 1 2 3; do $again >/dev/null && exit 0; done
        exit 1"
    mapfile -t options < <(printf '%s\n' "${@/=/$'\n'}")
    build/release/bin/soak_session --server "$url" --restart "$restart" --seed "${SOAK_SEED:-$RANDOM}" "${options[@]}"
}

main() {
    local name selected status=0
    read -ra selected <<<"${1:-$SOAKS}"
    [ $# -eq 0 ] || shift
    for name in "${selected[@]}"; do
        [[ " $SOAKS " == *" $name "* ]] || die "there is no soak '$name'; soaks: $SOAKS"
    done
    tools/dev/setup.sh
    build release test_stack_links soak_session soak_recording soak_disconnects bench_datalogger
    for name in "${selected[@]}"; do
        say "soak $name"
        # a shell of its own: "set -e" and the trap hold in it
        "$0" --one "$name" "$@" || { say "soak $name: failed" && status=1; }
    done
    return $status
}

case ${1:-} in
    --list) echo "$SOAKS" ;;
    --one) "soak_$2" "${@:3}" ;;
    *) main "$@" ;;
esac
