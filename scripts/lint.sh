#!/usr/bin/env bash
# The linters on src/: cppcheck, then clang-tidy with the checks of .clang-tidy (on all files, or
# those given).
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/need.sh
need clang++ cmake make clang-tidy cppcheck histedit.h
cppcheck -q --std=c++20 --language=c++ --enable=warning,performance,portability -I src \
  --suppressions-list=.cppcheck --error-exitcode=1 src
# With asserts: they tell it what holds. With clang++, whose options it knows.
cmake -B build/lint -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++ >/dev/null
# What is for another processor is not in its list of commands.
[ $# -gt 0 ] || mapfile -t files < <(find src -name '*.cpp' ! -name target_neon.cpp)
printf '%s\n' "${@:-${files[@]}}" | xargs -P "$JOBS" -n 4 clang-tidy -quiet -p build/lint
