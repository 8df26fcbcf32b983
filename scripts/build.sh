#!/bin/sh
# Configures and builds roadx into a build directory (default: build).
# Usage: scripts/build.sh [BUILD_DIR] [extra cmake arguments...]
set -eu
cd "$(dirname "$0")/.."
dir=${1:-build}
[ $# -gt 0 ] && shift
cmake -G Ninja -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
cmake --build "$dir"
