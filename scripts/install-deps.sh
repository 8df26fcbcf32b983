#!/bin/sh
# Installs, with apt-get, what this Debian 12 machine lacks. Safe to run again.
# Usage: scripts/install-deps.sh          what building and running roadx needs
#        scripts/install-deps.sh --test   that, and what the tests, benchmarks
#                                         and the independent readers need
set -eu
cd "$(dirname "$0")/.."

# Building roadx (GDAL writes the GIS outputs).
build="cmake ninja-build g++ pkg-config libpugixml-dev libcli11-dev nlohmann-json3-dev libgdal-dev"
# Tests and benchmarks; independent readers of what roadx writes (ezdxf,
# GDAL's ogrinfo and Python bindings, PROJ's pyproj, xmllint; a headless
# Chromium opens the HTML reports); clang for the fuzz targets.
test="libgtest-dev libgmock-dev googletest libbenchmark-dev clang libclang-rt-14-dev
libxml2-utils python3 python3-ezdxf python3-matplotlib gdal-bin python3-gdal python3-pyproj chromium"

case "${1:-}" in
  "") pkgs=$build ;;
  --test) pkgs="$build $test" ;;
  *) echo "usage: scripts/install-deps.sh [--test]" >&2; exit 2 ;;
esac

SUDO=""
[ "$(id -u)" -eq 0 ] || SUDO="sudo"
missing=""
for p in $pkgs; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing="$missing $p"
done
if [ -n "$missing" ]; then
  echo "install-deps: installing$missing"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq $missing >/dev/null
fi

# The independent DWG readers (test tools only, never linked into roadx),
# from the committed lockfile. Some node packages bring npm along, Debian's
# do not.
if [ "${1:-}" = "--test" ]; then
  if ! command -v npm >/dev/null 2>&1; then
    node=""
    command -v node >/dev/null 2>&1 || node=nodejs
    $SUDO apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq $node npm >/dev/null
  fi
  npm ci --prefix tests --no-audit --no-fund >/dev/null
fi
