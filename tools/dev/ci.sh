#!/bin/bash
# Everything that must hold; what ./test and the build server run. ./dev ci STAGE... runs some of it.
. "$(dirname "$0")/common.sh"

readonly STAGES="setup checks tidy program bench sanitized threads"
readonly LOGS=$ROOT/build/ci

stage_setup() { tools/dev/setup.sh; }
stage_checks() { tools/dev/checks.sh; }
stage_tidy() { tools/dev/lint.sh --tidy; } # over what the branch changed: nothing on main

# Of the release build the program, the benchmarks and what ./dev soak runs for hours: the tests run sanitized, and
# building them twice would show nothing new. These must be built, since the optimiser's warnings are errors as
# well. The program is then started the way the README says.
stage_program() {
    configure_whole release
    build release tavelin benchmarks soak_session soak_disconnects
    tools/dev/run.sh --shot "$LOGS/main-window.png"
}

stage_bench() { tools/dev/bench.sh --quick; }

# All tests under AddressSanitizer, UndefinedBehaviorSanitizer and LeakSanitizer.
stage_sanitized() {
    build dev
    run_tests dev
}

# ThreadSanitizer where threads of ours meet: the stack, the session layer and what watches items over it.
stage_threads() {
    local targets
    configure tsan
    mapfile -t targets < <(ninja -C build/tsan -t targets all | sed -n 's/^\(test_\(stack_\|sdk_\|monitoring\)[a-z0-9_]*\): phony$/\1/p')
    [ ${#targets[@]} -gt 0 ] || die "there are no tests with threads"
    build tsan "${targets[@]}"
    run_tests tsan -R '^test_(stack_|sdk_|monitoring)' -L '^(unit|protocol)$'
}

# Of a test that failed the log has what failed and nothing of the rest: whoever reads it sees but its first lines.
run_tests() { # PRESET [CTEST OPTIONS]
    local preset=$1
    shift
    TAVELIN_EVERY_TEST=1 GTEST_BRIEF=1 ctest --preset "$preset" "$@" 2>&1 |
        { grep --line-buffered -v '^This plugin does not support ' || true; } | tee "$LOGS/ctest-$preset.log"
}

# The runs' own closing lines: "98% tests passed, 1 tests failed out of 50".
closing_line() {
    compgen -G "$LOGS/ctest-*.log" >/dev/null || return 0
    sed -n 's/^[0-9]*% tests passed, \([0-9]*\) tests failed out of \([0-9]*\)$/\1 \2/p' "$LOGS"/ctest-*.log |
        awk '{ failed += $1; all += $2 } END { printf "%d passed, %d failed\n", all - failed, failed }'
}

main() {
    local stage started selected=("$@") rc=0
    [ $# -gt 0 ] || read -ra selected <<<"$STAGES"
    rm -rf "$LOGS"
    mkdir -p "$LOGS"
    for stage in "${selected[@]}"; do
        [[ " $STAGES " == *" $stage "* ]] || die "there is no stage '$stage'; stages: $STAGES"
    done
    for stage in "${selected[@]}"; do
        say "$stage"
        started=$SECONDS
        # a shell of its own: "set -e" holds in it, which it would not within a condition
        "$0" --one "$stage" || rc=$?
        printf '%-10s %5d s  %s\n' "$stage" $((SECONDS - started)) "$( ((rc == 0)) && echo passed || echo failed)" |
            tee -a "$LOGS/stages" >&2
        ((rc == 0)) || break
    done
    say "stages"
    cat "$LOGS/stages" >&2
    closing_line
    return $rc
}

case ${1:-} in
    --list) echo "$STAGES" ;;
    --one) "stage_$2" ;;
    *) main "$@" ;;
esac
