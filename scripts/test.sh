#!/bin/sh
# Installs what the tests need, builds roadx, the tests and the benchmarks,
# and runs every test (labels unit and interop).
# Usage: scripts/test.sh            (normal build in build/)
#        scripts/test.sh --sanitize (AddressSanitizer + UBSan build in build-san/)
# For everyday work the unit tests alone: ctest --test-dir build -L unit
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh --test
if [ "${1:-}" = "--sanitize" ]; then
  dir=build-san
  scripts/build.sh "$dir" -DROADX_SANITIZE=ON -DROADX_TESTS=ON -DROADX_BENCH=OFF
  export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
else
  dir=build
  # The benchmarks are built (not run) so that they keep compiling.
  scripts/build.sh "$dir" -DROADX_SANITIZE=OFF -DROADX_TESTS=ON -DROADX_BENCH=ON
fi

count() {  # number of tests, with extra ctest selection arguments
  ctest --test-dir "$dir" -N "$@" | sed -n 's/^Total Tests: //p'
}
all=$(count)
unit=$(count -L '^unit$')
interop=$(count -L '^interop$')
if [ "${all:-0}" -eq 0 ]; then
  echo "test: no tests found in $dir" >&2
  exit 1
fi
if [ $((unit + interop)) -ne "$all" ]; then
  echo "test: $((all - unit - interop)) of $all tests have neither the label unit nor interop" >&2
  exit 1
fi
# Every name says what it tests, briefly (no dump of a parameter's bytes).
long=$(ctest --test-dir "$dir" -N | sed -n 's/^ *Test *#[0-9]*: //p' | awk 'length($0) >= 100 || /GetParam/')
if [ -n "$long" ]; then
  echo "test: test names of 100 characters or more, or with a parameter dump:" >&2
  echo "$long" >&2
  exit 1
fi

log="$dir/test-log.txt"
rc=0
ctest --test-dir "$dir" --output-on-failure --no-tests=error -j2 | tee "$log" || rc=$?
# tee hides ctest's status from set -e; the log tells.
grep -q '^100% tests passed' "$log" || rc=1
skipped=$(grep -c '(Skipped)$' "$log" || true)
verdict=passed
[ "$rc" -eq 0 ] || verdict=FAILED
echo "test: $all tests in $dir ($unit unit, $interop interop), $skipped skipped: $verdict"
exit "$rc"
