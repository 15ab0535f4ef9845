#!/bin/bash
# ./dev fmt [--check]: one version of each formatter and no other, so that two machines never disagree.
. "$(dirname "$0")/common.sh"

readonly PRETTIER=tools/node/node_modules/.bin/prettier

each() { # FILES COMMAND...: as few calls as there are processors
    local list=$1
    shift
    "$list" | xargs -r -d '\n' -P "$(nproc)" -n 50 "$@"
}

format_all() {
    python3 tools/check_includes.py --fix
    each sources clang-format-14 -i
    each python_files black --quiet
    each javascript_files "$PRETTIER" --log-level warn --write
    each shell_files shfmt -w
}

# Each names the files that are not formatted, and fails when there are some.
check_cpp() {
    local faults
    faults=$(each sources clang-format-14 --dry-run --Werror 2>&1) && return
    sed -n 's/^\([^ :]*\):[0-9]*:[0-9]*: error: .*/\1: not formatted/p' <<<"$faults" | sort -u >&2
    return 1
}
check_python() {
    local faults
    faults=$(each python_files black --check 2>&1) && return
    grep -E '^(would|error|Oh)' <<<"$faults" >&2
    return 1
}
check_javascript() { each javascript_files "$PRETTIER" --log-level warn --check; }
check_shell() {
    local files
    files=$(each shell_files shfmt -l) && [ -z "$files" ] && return
    awk '{ print $0 ": not formatted" }' <<<"$files" >&2
    return 1
}

check_all() {
    local language status=0
    for language in cpp python javascript shell; do
        "check_$language" || status=1
    done
    return $status
}

for tool in clang-format-14 black shfmt "$PRETTIER"; do
    command -v "$tool" >/dev/null || { tools/dev/setup.sh && break; }
done
case ${1:-} in
    "") format_all ;;
    --check) check_all || die "run ./dev fmt" ;;
    *) die "fmt takes --check or nothing" ;;
esac
