#!/usr/bin/env bash
# Fuzzes: scripts/fuzz.sh TARGET [SECONDS [libFuzzer options]], TARGET one of session, script,
# variable_file, evaluator, engine. New inputs gather in build/fuzz/grown/TARGET, findings in
# build/fuzz/found; a finding becomes a test of its kind before it is mended.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/need.sh
need cmake make clang++ gmp.h
target=$1
seconds=${2:-600}
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "fuzz_$target" >/dev/null
grown=build/fuzz/grown/$target
mkdir -p "$grown" build/fuzz/found
dictionary=()
[ "$target" = engine ] || dictionary=(-dict=fuzz/dictionary)
exec "build/fuzz/fuzz/fuzz_$target" "$grown" "fuzz/corpus/$target" "${dictionary[@]}" \
  -artifact_prefix="$PWD/build/fuzz/found/$target-" -max_total_time="$seconds" -timeout=120 \
  -rss_limit_mb=3000 -print_final_stats=1 -close_fd_mask=1 "${@:3}"
