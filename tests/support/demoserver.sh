#!/bin/bash
# The demo server as a service of a test run or of ./dev run.
#
#   demoserver.sh start DIR INFO [OWNER]   returns when INFO holds the server's address; DIR: log and keys
#   demoserver.sh stop DIR
#
# The server ends by itself when the process OWNER (by default the caller) has ended, so that an interrupted
# test run leaves nothing behind.
set -euo pipefail

readonly START_SECONDS=60 STOP_SECONDS=10
program=$(cd "$(dirname "$(readlink -f "$0")")/../.." && pwd)/demoserver/main.mjs

die() {
    echo "demoserver.sh: $*" >&2
    exit 1
}

# A process is named by its number and its start time: numbers are used again.
identity() { # PID
    local stat
    { read -r stat <"/proc/$1/stat"; } 2>/dev/null || return 1
    read -ra stat <<<"${stat##*) }"
    [ "${stat[0]}" != Z ] || return 1
    echo "$1 ${stat[19]}"
}

is_running() { # DIR/process
    local recorded
    recorded=$(cat "$1" 2>/dev/null) || return 1
    [ "$(identity "${recorded%% *}")" = "$recorded" ]
}

wait_for() { # SECONDS COMMAND...
    local tenths=$(($1 * 10))
    shift
    until "$@"; do
        ((tenths-- > 0)) || return 1
        sleep 0.1
    done
}

supervise() { # DIR INFO OWNER
    local dir=$1 info=$2 owner=$3 server watch
    identity "$BASHPID" >"$dir/process"
    node "$program" --port 0 --host 127.0.0.1 --info "$info" --pki "$dir/pki" &
    server=$!
    tail --pid="$owner" -f /dev/null &
    watch=$!
    # shellcheck disable=SC2064 # the numbers as they are now
    trap "kill $server $watch 2>/dev/null" TERM
    wait -n "$server" "$watch" || true
    kill "$server" "$watch" 2>/dev/null || true
    wait "$server" || true
    rm -f "$info"
}

ready_or_dead() { [ -s "$2" ] || ! is_running "$1/process"; }
gone() { ! is_running "$1/process"; }

start() {
    [ $# -ge 2 ] || die "start needs DIR and INFO"
    local dir=$1 info=$2 owner=${3:-$PPID}
    mkdir -p "$dir"
    stop "$dir"
    rm -f "$info"
    setsid "$0" supervise "$dir" "$info" "$owner" >"$dir/log" 2>&1 </dev/null &
    wait_for 5 test -s "$dir/process" || die "could not start"
    wait_for $START_SECONDS ready_or_dead "$dir" "$info" || true
    if [ ! -s "$info" ]; then
        tail -n 30 "$dir/log" >&2
        stop "$dir"
        die "the demo server did not start; its log is $dir/log"
    fi
    cat "$info"
}

stop() {
    local dir=$1 pid
    if is_running "$dir/process"; then
        read -r pid _ <"$dir/process"
        kill "$pid"
        # everything that the supervisor started is in its session
        wait_for $STOP_SECONDS gone "$dir" || kill -9 -- "-$pid"
    fi
    rm -f "$dir/process"
}

command=${1:-}
[ $# -gt 1 ] || die "usage: demoserver.sh start DIR INFO [OWNER] | stop DIR"
shift
case $command in
    start | stop | supervise) "$command" "$@" ;;
    *) die "unknown command '$command'" ;;
esac
