#!/usr/bin/env bash
# Line and branch coverage of src/ by all tests, and the lines that none reaches.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/need.sh
need gcovr
./test coverage >/dev/null
gcovr -r . -f src build/coverage --exclude-throw-branches --exclude-unreachable-branches -s
