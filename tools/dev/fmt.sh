#!/bin/bash
# ./dev fmt [--check]: version 14 and no other, so that two machines never disagree.
. "$(dirname "$0")/common.sh"

command -v clang-format-14 >/dev/null || tools/dev/setup.sh
case ${1:-} in
    "") mode=(-i) ;;
    --check) mode=(--dry-run --Werror) ;;
    *) die "fmt takes --check or nothing" ;;
esac
sources | xargs -r -d '\n' -P "$(nproc)" -n 50 clang-format-14 "${mode[@]}" || die "run ./dev fmt"
