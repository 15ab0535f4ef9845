#!/bin/bash
# Runs the soak against a demo server of its own, which it also restarts in between:
#   soak.sh PROGRAM [OPTIONS OF THE PROGRAM]
set -euo pipefail

demo=$(cd "$(dirname "$(readlink -f "$0")")/../../demoserver" && pwd)
dir=$(mktemp -d)
stop() {
    node "$demo/ctl.mjs" stop "$dir/info" >/dev/null 2>&1 || true
    rm -rf "$dir"
}
trap stop EXIT

options=(--info "$dir/info" --log "$dir/log" --pki "$dir/pki" --host 127.0.0.1)
url=$(node "$demo/ctl.mjs" start "${options[@]}" --port 0 | tail -n 1)
port=$(sed -E 's|.*:([0-9]+)/.*|\1|' <<<"$url")
again=$(printf '%q ' node "$demo/ctl.mjs" start "${options[@]}" --port "$port")
# on a busy machine a start may take longer than it is given
restart="node '$demo/ctl.mjs' stop '$dir/info' >/dev/null
    for n in 1 2 3; do $again >/dev/null && exit 0; done
    exit 1"

program=$1
shift
"$program" --server "$url" --restart "$restart" --seed "${SOAK_SEED:-$RANDOM}" "$@"
