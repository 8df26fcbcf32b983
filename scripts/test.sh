#!/bin/sh
# Installs what is missing, builds roadx and runs every test.
# Usage: scripts/test.sh            (normal build in build/)
#        scripts/test.sh --sanitize (AddressSanitizer + UBSan build in build-san/)
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh
if [ "${1:-}" = "--sanitize" ]; then
  scripts/build.sh build-san -DROADX_SANITIZE=ON -DROADX_TESTS=ON -DROADX_BENCH=OFF
  export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
  ctest --test-dir build-san --output-on-failure --no-tests=error -j2
else
  scripts/build.sh build -DROADX_SANITIZE=OFF -DROADX_TESTS=ON -DROADX_BENCH=ON
  ctest --test-dir build --output-on-failure --no-tests=error -j2
fi
