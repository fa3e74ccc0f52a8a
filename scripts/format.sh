#!/usr/bin/env bash
# Formats the C++ files in place; with --check changes nothing and fails on a difference.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/need.sh
need clang-format
[ "${1:-}" = --check ] && mode=(--dry-run -Werror) || mode=(-i)
git ls-files -co --exclude-standard '*.cpp' '*.h' '*.inc' | xargs clang-format "${mode[@]}"
