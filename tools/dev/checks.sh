#!/bin/bash
# The checks that need no build. All of them run, so that one look shows every fault.
. "$(dirname "$0")/common.sh"

failed=()
check() { # NAME COMMAND...
    local name=$1
    shift
    if "$@"; then say "$name: ok"; else failed+=("$name"); fi
}

lint_python() { python_files | xargs -r -d '\n' flake8; }
lint_shell() { shell_files | xargs -r -d '\n' shellcheck; }

for tests in tools/check_*test.py; do # the checks' own
    check "${tests#tools/}" python3 "$tests" -q
done
check "tests of the driver" tools/ui/uidriver_test.py -q
check format tools/dev/fmt.sh --check
check "lint of Python" lint_python
check "lint of shell" lint_shell
check includes python3 tools/check_includes.py
check dialect python3 tools/check_dialect.py
check layers python3 tools/check_layers.py
check rooms python3 tools/check_rooms.py
check sizes python3 tools/check_sizes.py
check wording python3 tools/check_wording.py
check translations python3 tools/translations.py check
check manual python3 tools/check_manual.py
check map python3 tools/check_map.py
check names python3 tools/check_names.py
check contracts tools/dev/docs.sh
check "generated files" python3 tools/gen/generate.py --check
[ ${#failed[@]} -eq 0 ] || die "failed: $(printf '%s, ' "${failed[@]}" | sed 's/, $//')"
