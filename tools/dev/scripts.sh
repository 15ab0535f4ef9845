# Sourced after common.sh: which files are scripts, tracked or new.
# shellcheck shell=bash

project_files() { # PATTERN...
    git ls-files --cached --others --exclude-standard -- "$@" |
        while read -r file; do
            [ ! -f "$file" ] || echo "$file"
        done
}

python_files() { project_files '*.py'; }
javascript_files() { project_files '*.mjs'; }
shell_files() { project_files '*.sh' dev run test .ci/run; }
