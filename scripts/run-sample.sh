#!/bin/sh
# The main job on the bundled sample: installs what building roadx needs,
# builds the roadx program alone (no tests, no benchmarks), shows what
# samples/road.xml holds, converts it to every output format and writes its
# HTML report.
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh build --target roadx -DROADX_SANITIZE=OFF -DROADX_TESTS=OFF -DROADX_BENCH=OFF
out=${OUT:-build/sample-out}
mkdir -p "$out"
roadx=build/cli/roadx
$roadx info samples/road.xml
for fmt in xml rd3 dxf dwg; do
  $roadx convert samples/road.xml -o "$out/road.$fmt" --yes
  echo "wrote $out/road.$fmt ($(wc -c < "$out/road.$fmt") bytes)"
done
# The HTML report; the sample's one surface is the road's ground.
$roadx report samples/road.xml -o "$out/road.html" --yes
echo "wrote $out/road.html ($(wc -c < "$out/road.html") bytes)"
# The RD3 file read back: the same road.
$roadx info "$out/road.rd3"
