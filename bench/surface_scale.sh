#!/bin/sh
# Surface import at three sizes, side by side in one run: `xmllint --noout`
# (a bare libxml2 tree parse), the bare pugixml DOM parse with every number
# read (bench_landxml_import ... baseline: the floor of a DOM-based import)
# and `roadx info` (the whole import: every number read, the TIN built).
# Each command runs once per size at nice 19 under /usr/bin/time; the table
# gives wall time, CPU time (user + system), peak RSS, and the ratios
# roadx / xmllint (wall and CPU) and roadx peak / file size.
#
#   bench/surface_scale.sh BUILD_DIR [POINTS...]     (default 200704 1000000)
#
# The files are made by gen_big_landxml in BUILD_DIR/bench-data and removed
# afterwards (they are never committed). 10000000 points make a 1.2 GB file;
# for that size xmllint runs with --stream (its tree would need about 14 GB).
set -eu
build=$1
shift
[ $# -gt 0 ] || set -- 200704 1000000
data=$build/bench-data
mkdir -p "$data"
measure() {  # prints "wall user sys maxrss_kb"
    nice -n 19 /usr/bin/time -f '%e %U %S %M' -o "$data/.time" "$@" >/dev/null
    cat "$data/.time"
}
printf '%-9s %-8s %-26s %8s %8s %9s %8s %8s %8s\n' points file_MB what wall_s cpu_s peak_MiB t_ratio cpu_ratio mem/file
for points in "$@"; do
    file=$data/surface_$points.xml
    nice -n 19 "$build/bench/gen_big_landxml" "$file" "$points"
    size=$(stat -c %s "$file")
    xmlflags=--noout
    [ "$points" -ge 5000000 ] && xmlflags="--noout --stream"
    set -- $(measure xmllint $xmlflags "$file"); xw=$1; xc=$(echo "$2 + $3" | bc); xm=$4
    set -- $(measure "$build/bench/bench_landxml_import" "$file" baseline); bw=$1; bc_=$(echo "$2 + $3" | bc); bm=$4
    set -- $(measure "$build/cli/roadx" info "$file"); rw=$1; rc=$(echo "$2 + $3" | bc); rm_=$4
    rm -f "$file" "$data/.time"
    awk -v p="$points" -v s="$size" -v xf="$xmlflags" \
        -v xw="$xw" -v xc="$xc" -v xm="$xm" -v bw="$bw" -v bc="$bc_" -v bm="$bm" -v rw="$rw" -v rc="$rc" -v rm="$rm_" '
    function row(what, w, c, m) {
        printf "%-9s %-8.1f %-26s %8.2f %8.2f %9.1f %8.3f %8.3f %8.2f\n", p, s / 1e6, what, w, c, m / 1024, w / xw, c / xc, m * 1024 / s
    }
    BEGIN {
        row("xmllint " xf, xw, xc, xm)
        row("bare pugixml parse+nums", bw, bc, bm)
        row("roadx info", rw, rc, rm)
    }'
done
rmdir "$data" 2>/dev/null || true
