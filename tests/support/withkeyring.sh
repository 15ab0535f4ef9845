#!/bin/bash
# Runs a test with a session bus and a keyring of its own, unlocked; TAVELIN_KEYRING names the daemon's process.
#
#   withkeyring.sh PROGRAM [ARGUMENTS]
#
# Where the programs for it are not installed the test is skipped (77) and says so; ./dev setup installs them, and a
# run that sets CI or TAVELIN_EVERY_TEST fails instead.
set -euo pipefail

readonly SKIPPED=77 START_SECONDS=20

without() { # REASON
    echo "withkeyring.sh: $1" >&2
    [ -z "${CI:-}${TAVELIN_EVERY_TEST:-}" ] || exit 1
    exit "$SKIPPED"
}

is_ready() {
    # a question to the service itself would start another one
    dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner \
        string:org.freedesktop.secrets | grep -q 'boolean true' || return 1
    dbus-send --session --print-reply --dest=org.freedesktop.secrets /org/freedesktop/secrets/aliases/default \
        org.freedesktop.DBus.Properties.Get string:org.freedesktop.Secret.Collection string:Locked 2>/dev/null |
        grep -q 'boolean false'
}

inside() { # PROGRAM [ARGUMENTS]
    printf secret | gnome-keyring-daemon --foreground --unlock --components=secrets >"$HOME/keyring.log" 2>&1 &
    export TAVELIN_KEYRING=$!
    local end=$((SECONDS + START_SECONDS)) rc=0
    until is_ready; do
        if [ "$SECONDS" -ge "$end" ]; then
            echo "withkeyring.sh: the keyring did not start:" >&2
            cat "$HOME/keyring.log" >&2
            return 1
        fi
        sleep 0.05
    done
    "$@" || rc=$?
    kill -CONT "$TAVELIN_KEYRING" 2>/dev/null || true
    kill "$TAVELIN_KEYRING" 2>/dev/null || true
    return "$rc"
}

if [ "${1:-}" = --inside ]; then
    shift
    inside "$@"
    exit
fi
for program in dbus-run-session dbus-send gnome-keyring-daemon; do
    command -v "$program" >/dev/null || without "$program is not installed (./dev setup installs it)"
done
home=$(mktemp -d "${TMPDIR:-/tmp}/tavelin-keyring-XXXXXX")
trap 'rm -rf "$home"' EXIT
env HOME="$home" XDG_DATA_HOME="$home/data" XDG_RUNTIME_DIR="$home" GNOME_KEYRING_CONTROL= \
    dbus-run-session -- "$0" --inside "$@"
