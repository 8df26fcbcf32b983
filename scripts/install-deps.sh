#!/bin/sh
# Installs, with apt-get, whatever the build and the tests need and this
# Debian 12 machine lacks. Safe to run again.
set -eu
pkgs="cmake ninja-build g++ clang libclang-rt-14-dev pkg-config libpugixml-dev libcli11-dev nlohmann-json3-dev
libgtest-dev libgmock-dev googletest libbenchmark-dev libxml2-utils python3 python3-ezdxf python3-matplotlib gdal-bin"
missing=""
for p in $pkgs; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing="$missing $p"
done
if [ -n "$missing" ]; then
  echo "install-deps: installing$missing"
  SUDO=""
  [ "$(id -u)" -eq 0 ] || SUDO="sudo"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq $missing >/dev/null
fi
# Independent DWG readers for the tests (test tools only, never linked into
# roadx), from the committed lockfile; only where node and npm are present
# or can be installed from Debian.
if ! command -v npm >/dev/null 2>&1 && command -v apt-get >/dev/null 2>&1; then
  SUDO=""
  [ "$(id -u)" -eq 0 ] || SUDO="sudo"
  if ! command -v node >/dev/null 2>&1; then
    $SUDO apt-get update -qq && DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq nodejs npm >/dev/null || true
  else
    # A node without npm (npm comes with some node packages, not all).
    DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq npm >/dev/null 2>&1 || true
  fi
fi
if command -v node >/dev/null 2>&1 && command -v npm >/dev/null 2>&1; then
  npm ci --prefix "$(dirname "$0")/../tests" --no-audit --no-fund >/dev/null
fi
