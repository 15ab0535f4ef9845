# Sourced by the scripts of ./dev: places, messages, the compiler cache.
# shellcheck shell=bash
set -euo pipefail

ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
cd "$ROOT"

say() { printf '== %s\n' "$*" >&2; }
die() {
    printf './dev: %s\n' "$*" >&2
    exit 1
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        command -v sudo >/dev/null || die "packages are missing and there is no sudo; as root: $*"
        sudo "$@"
    fi
}

# The cache sees through precompiled headers, and a clone in another folder finds the same entries.
export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$ROOT} CCACHE_NOHASHDIR=1

is_preset() { [[ $1 =~ ^(release|dev|tsan)$ ]]; }

# A compiler under sanitizers takes up to 1.2 GB: fewer jobs are faster than swapping.
job_count() {
    local cores available_kb jobs
    cores=$(nproc)
    available_kb=$(awk '/^MemAvailable:/ { print $2 }' /proc/meminfo)
    jobs=$((available_kb / 1200000))
    ((jobs < cores)) || jobs=$cores
    ((jobs > 0)) || jobs=1
    echo "$jobs"
}

configure() { # PRESET
    [ -f "build/$1/build.ninja" ] || cmake --preset "$1" >&2
}

# For a tree that is made from nothing, and not to edit in: with several sources at a time it takes half as long, but a
# source that was edited takes its neighbours along. A tree that is there already stays as it is.
configure_whole() { # PRESET
    [ -f "build/$1/build.ninja" ] ||
        cmake --preset "$1" -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=8 >&2
}

# Builds the targets, or everything.
build() { # PRESET [TARGET...]
    local preset=$1
    shift
    configure "$preset"
    cmake --build "build/$preset" --parallel "${CMAKE_BUILD_PARALLEL_LEVEL:-$(job_count)}" ${1:+--target "$@"} >&2
}

project_files() { # PATTERN...: tracked or new, and there
    git ls-files --cached --others --exclude-standard -- "$@" |
        while read -r file; do
            [ ! -f "$file" ] || echo "$file"
        done
}

# What people write, by language.
sources() { project_files '*.cpp' '*.h' '*.c' | grep -v '/generated/'; }
python_files() { project_files '*.py'; }
javascript_files() { project_files '*.mjs'; }
shell_files() { project_files '*.sh' dev run test .ci/run; }
