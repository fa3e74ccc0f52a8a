#!/usr/bin/env bash
# Builds the calculator and its tests for 64-bit ARM and runs them under qemu: the units and the
# transcripts, but for the longest products, what waits at terminals or asks a shell, and the checks of the
# tree.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/need.sh
need cmake make python3 aarch64-linux-gnu-g++ qemu-aarch64

# The libraries of the tests for that processor: unpacked here, nothing is installed on this machine.
libraries=build/aarch64-libraries
if [ ! -e $libraries/usr ]; then
  need apt-get dpkg-deb
  fetched=$(mktemp -d)
  trap 'rm -rf "$fetched"' EXIT
  mkdir -p "$fetched"/{lists,cache/archives}/partial $libraries
  apt=(apt-get -q -o APT::Architecture=arm64 -o APT::Architectures=arm64 -o APT::Sandbox::User=
       -o Dir::State::Lists="$fetched/lists" -o Dir::Cache="$fetched/cache")
  "${apt[@]}" update
  (cd "$fetched" && "${apt[@]}" download libgmp-dev libgtest-dev)
  for package in "$fetched"/*.deb; do dpkg-deb -x "$package" "$fetched/root"; done
  find "$fetched/root" -name '*.so*' -delete  # of programs that carry theirs
  mv "$fetched/root/usr" $libraries/
fi

cmake --preset aarch64 -DTIVELO_TESTS=ON
cmake --build --preset aarch64 --target tivelo_tests
ctest --preset aarch64
