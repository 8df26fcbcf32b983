#!/bin/sh
# The 200k-point surface (448 x 448 grid) read by an open LandXML reader,
# @ifc-lite/wasm (a benchmark tool only, never linked; its own package.json and
# package-lock.json in bench/ifc_lite, installed there with npm ci), and by
# `roadx info`, side by side in one run at nice 19, with the ratio.
#
#   bench/ifc_lite_vs_roadx.sh BUILD_DIR
#
# The ifc-lite figure is its parse call alone (file read and WebAssembly set-up
# excluded) and the whole node process; roadx's is the whole process (read,
# parse, every number, the TIN built).
set -eu
build=$1
here=$(cd "$(dirname "$0")" && pwd)
[ -d "$here/ifc_lite/node_modules/@ifc-lite/wasm" ] || (cd "$here/ifc_lite" && npm ci --no-audit --no-fund >/dev/null)
file=$build/bench_ifc_lite_200k.xml
nice -n 19 "$build/bench/gen_big_landxml" "$file" 200704
/usr/bin/time -f '%e %U %S %M' -o "$build/.ifc_time" nice -n 19 node "$here/ifc_lite/parse_tin.mjs" "$file" >"$build/.ifc_out"
set -- $(cat "$build/.ifc_out"); ip=$1; ipts=$2; ifaces=$3
set -- $(cat "$build/.ifc_time"); iw=$1; ic=$(echo "$2 + $3" | bc); im=$4
/usr/bin/time -f '%e %U %S %M' -o "$build/.ifc_time" nice -n 19 "$build/cli/roadx" info "$file" >/dev/null
set -- $(cat "$build/.ifc_time"); rw=$1; rc=$(echo "$2 + $3" | bc); rm_=$4
rm -f "$file" "$build/.ifc_time" "$build/.ifc_out"
awk -v ip="$ip" -v ipts="$ipts" -v ifaces="$ifaces" -v iw="$iw" -v ic="$ic" -v im="$im" -v rw="$rw" -v rc="$rc" -v rm="$rm_" 'BEGIN {
    printf "@ifc-lite/wasm parse call  %7.2f s wall (%d points, %d faces)\n", ip, ipts, ifaces
    printf "@ifc-lite/wasm process     %7.2f s wall %6.2f s cpu  peak %7.1f MiB\n", iw, ic, im / 1024
    printf "roadx info                 %7.2f s wall %6.2f s cpu  peak %7.1f MiB\n", rw, rc, rm / 1024
    printf "ratio roadx / parse call   %7.3f wall\n", rw / ip
    printf "ratio roadx / process      %7.3f wall %6.3f cpu (goal <= 0.05)\n", rw / iw, rc / ic
}'
