#!/usr/bin/env bash
# Installs the cross toolchains for x86_64 and i686, 64- and 32-bit Wine, user-mode emulation
# for 32-bit programs, and the headless display on Debian 12 (as root).
# Does nothing when everything is already there.
set -u
needed() {
  command -v i686-w64-mingw32-g++-posix >/dev/null &&
  command -v x86_64-w64-mingw32-g++-posix >/dev/null &&
  [ -x /usr/lib/wine/wine64 ] && [ -e /usr/lib/x86_64-linux-gnu/wine/x86_64-windows/kernel32.dll ] &&
  [ -x /usr/lib/wine/wine ] && [ -e /usr/lib/i386-linux-gnu/wine/i386-windows/kernel32.dll ] &&
  [ -x /usr/bin/qemu-i386-static ] &&
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
# -t bookworm: otherwise apt refuses wine32 over a version mismatch between the two lists.
apt-get install -y -t bookworm --no-install-recommends \
  g++-mingw-w64-i686 g++-mingw-w64-x86-64 wine wine64 wine32:i386 qemu-user-static \
  xvfb xauth cmake googletest x11-apps netpbm fonts-wine
