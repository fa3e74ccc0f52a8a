#!/usr/bin/env bash
# The linter on src/ (all files, or those given), with the checks of .clang-tidy.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/need.sh
need g++ cmake make clang-tidy
cmake -B build/lint -DCMAKE_BUILD_TYPE=Debug >/dev/null  # with asserts: they tell it what holds
[ $# -gt 0 ] || mapfile -t files < <(find src -name '*.cpp')
printf '%s\n' "${@:-${files[@]}}" | xargs -P 2 -n 4 clang-tidy -quiet -p build/lint
