#!/bin/bash
# Replays the corpus of every fuzz target under AddressSanitizer and UndefinedBehaviorSanitizer.
exec "$(dirname "$0")/test.sh" dev -L fuzz "$@"
