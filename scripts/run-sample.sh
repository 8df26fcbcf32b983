#!/bin/sh
# The main job on the bundled sample: installs what is missing, builds roadx,
# converts samples/road.xml to every output format and shows what it holds.
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh build -DROADX_TESTS=OFF -DROADX_BENCH=OFF
out=${OUT:-build/sample-out}
mkdir -p "$out"
roadx=build/cli/roadx
$roadx info samples/road.xml
for fmt in xml rd3 dxf; do
  if $roadx convert samples/road.xml -o "$out/road.$fmt" --yes; then
    echo "wrote $out/road.$fmt"
  else
    echo "could not write $out/road.$fmt" >&2
  fi
done
