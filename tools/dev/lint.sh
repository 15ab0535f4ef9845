#!/bin/bash
# ./dev lint [--tidy] [--all | FILE...]: the project's checks, then clang-tidy over what the branch changed. With
# --tidy the latter only, as ./dev ci has it.
. "$(dirname "$0")/common.sh"

base_commit() {
    local ref
    for ref in origin/main main; do
        git merge-base HEAD "$ref" 2>/dev/null && return
    done
    git rev-parse HEAD
}

selected() { # the .cpp files to look at
    case ${1:-} in
        --all) sources ;;
        "") sources | grep -Fxf <(
            git diff --name-only --diff-filter=d "$(base_commit)"
            git ls-files --others --exclude-standard
        ) ;;
        *) printf '%s\n' "$@" ;;
    esac | grep '\.cpp$'
}

# A tree of its own: clang cannot read the precompiled headers and options that g++ leaves in the others.
# Only moc runs in it, called directly, since its targets would build every library first.
prepare_tree() {
    [ -f build/lint/build.ninja ] || cmake --preset release -B build/lint -DTAVELIN_CCACHE=OFF >&2
    cmake build/lint >/dev/null
    find build/lint -name AutogenInfo.json -print0 |
        xargs -0 -r -I{} cmake -E cmake_autogen {} Release >/dev/null
}

known_to_build() { # only what the build compiles has options to check it with
    grep -Fxf <(sed -n "s|^ *\"file\": \"$ROOT/\(.*\)\",\{0,1\}$|\1|p" build/lint/compile_commands.json)
}

check_project() {
    local status=0
    tools/dev/setup.sh
    tools/dev/checks.sh || status=1
    python3 tools/check_wording.py "$(base_commit)..HEAD" || status=1
    return $status
}

tidy() { # [--all | FILE...]
    local files clang_tidy=(clang-tidy-14 --quiet --warnings-as-errors='*' -p build/lint)
    mapfile -t files < <(selected "$@")
    if [ ${#files[@]} -gt 0 ]; then
        prepare_tree
        mapfile -t files < <(printf '%s\n' "${files[@]}" | known_to_build)
    fi
    say "clang-tidy over ${#files[@]} files"
    [ ${#files[@]} -gt 0 ] || return 0
    printf '%s\n' "${files[@]}" | xargs -d '\n' -r -P "$(job_count)" -n 1 "${clang_tidy[@]}"
}

status=0
if [ "${1:-}" = --tidy ]; then
    shift
else
    check_project || status=1
fi
tidy "$@" || status=1
exit $status
