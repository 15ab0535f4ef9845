#!/bin/bash
# ./dev build [PRESET] [TARGET...]
. "$(dirname "$0")/common.sh"

preset=release
if [ $# -gt 0 ] && is_preset "$1"; then
    preset=$1
    shift
fi
tools/dev/setup.sh
build "$preset" "$@"
