#!/usr/bin/env bash
# Line and branch coverage of src/ by all tests, and the lines that none reaches.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/need.sh
need gcovr
find build/coverage -name '*.gcda' -delete 2>/dev/null || true  # counts of earlier runs would add up
./test coverage >&2
gcovr -r . -f src build/coverage --exclude-throw-branches --exclude-unreachable-branches -s
