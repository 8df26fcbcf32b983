#!/bin/sh
# Configures and builds roadx into a build directory (default: build).
# Usage: scripts/build.sh [BUILD_DIR] [--target TARGET] [extra cmake arguments...]
# With --target only that target (and what it needs) is built.
set -eu
cd "$(dirname "$0")/.."
dir=${1:-build}
[ $# -gt 0 ] && shift
target=""
if [ "${1:-}" = "--target" ]; then
  target=$2
  shift 2
fi
cmake -G Ninja -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
if [ -n "$target" ]; then
  cmake --build "$dir" --target "$target"
else
  cmake --build "$dir"
fi
