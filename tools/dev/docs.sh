#!/bin/bash
# ./dev docs: the pages of the public headers in build/docs, for who writes a plugin. Wrong contracts are errors.
. "$(dirname "$0")/common.sh"

command -v doxygen >/dev/null || tools/dev/setup.sh
python3 tools/check_contracts.py
say "build/docs/html/index.html"
