#!/usr/bin/env bash
# Installs the cross toolchain, Wine and the headless display on Debian 12 (as root).
# Does nothing when everything is already there.
set -u
needed() {
  command -v i686-w64-mingw32-g++-posix >/dev/null &&
  command -v wine >/dev/null && [ -e /usr/lib/i386-linux-gnu/wine/i386-windows/kernel32.dll ] &&
  command -v Xvfb >/dev/null && command -v xauth >/dev/null &&
  command -v cmake >/dev/null && [ -d /usr/src/googletest ] &&
  command -v xwd >/dev/null && command -v pnmtopng >/dev/null &&
  [ -d /usr/share/wine/fonts ]
}
needed && exit 0
[ "$(id -u)" = 0 ] || { echo "install-deps: run as root to install the toolchain" >&2; exit 1; }
export DEBIAN_FRONTEND=noninteractive
dpkg --add-architecture i386
# An error about the i386 security list is harmless here.
apt-get update || true
apt-get install -y -t bookworm --no-install-recommends \
  g++-mingw-w64-i686 wine wine32:i386 xvfb xauth cmake googletest \
  x11-apps netpbm fonts-wine
