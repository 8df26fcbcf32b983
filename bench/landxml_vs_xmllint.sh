#!/bin/sh
# Times `roadx info FILE` (parse, read every number, build the TIN) against
# `xmllint --noout FILE` (a bare parse) in one run, with peak memory, and
# prints the ratios: roadx time / xmllint time, roadx peak RSS / file size.
#
#   bench/landxml_vs_xmllint.sh BUILD_DIR [FILE]
# Without FILE, BUILD_DIR/big.xml is made with gen_big_landxml.
set -eu
build=$1
file=${2:-$build/big.xml}
[ -f "$file" ] || "$build/bench/gen_big_landxml" "$file"
measure() {  # prints "seconds maxrss_kb"
    /usr/bin/time -f '%e %M' -o "$build/.lx_time" "$@" >/dev/null
    cat "$build/.lx_time"
}
size=$(stat -c %s "$file")
set -- $(measure xmllint --noout "$file"); xt=$1; xm=$2
set -- $(measure "$build/cli/roadx" info "$file"); rt=$1; rm=$2
rm -f "$build/.lx_time"
awk -v s="$size" -v xt="$xt" -v xm="$xm" -v rt="$rt" -v rm="$rm" 'BEGIN {
    printf "file           %8.1f MB\n", s / 1e6
    printf "xmllint --noout %7.2f s  peak %7.1f MB\n", xt, xm / 1024
    printf "roadx info      %7.2f s  peak %7.1f MB\n", rt, rm / 1024
    printf "time ratio      %7.3f (target <= 0.2)\n", rt / xt
    printf "memory ratio    %7.3f x file (target < 4)\n", rm * 1024 / s
}'
