#!/bin/bash
# ./dev fmt [--check]: version 14 and no other, so that two machines never disagree.
. "$(dirname "$0")/common.sh"

for_each_source() { # COMMAND...
    sources | xargs -r -d '\n' -P "$(nproc)" -n 1 "$@"
}

command -v clang-format-14 >/dev/null || tools/dev/setup.sh
case ${1:-} in
    "") for_each_source clang-format-14 -i ;;
    --check)
        # shellcheck disable=SC2016 # the inner shell's argument
        for_each_source bash -c \
            'clang-format-14 --dry-run --Werror "$1" 2>/dev/null || { echo "$1: not formatted" >&2; exit 1; }' - ||
            die "run ./dev fmt"
        ;;
    *) die "fmt takes --check or nothing" ;;
esac
