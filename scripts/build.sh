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
# A compiler cache, where the machine has one, makes rebuilds and other
# clones cheap; the build is the same without it.
launcher=""
command -v ccache >/dev/null 2>&1 && launcher="-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"
cmake -G Ninja -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo $launcher "$@" >/dev/null
if [ -n "$target" ]; then
  cmake --build "$dir" --target "$target"
else
  cmake --build "$dir"
fi
