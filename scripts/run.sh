#!/usr/bin/env bash
# The main job: builds and installs the library for x86_64 and i686 (one install tree each),
# builds the showcase application against an install tree alone through find_package, and
# runs it headless under Xvfb with the architecture this host runs fastest.
# Its log and screenshot are left in out/.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
out=$root/out
"$root/scripts/install-deps.sh"
. "$root/scripts/wine-session.sh"

build_and_install() {
  local arch=$1
  local build=$root/build/release-$arch install=$root/build/install-$arch
  local toolchain=$root/cmake/toolchain-$arch-mingw.cmake
  cmake -S "$root" -B "$build" -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_BUILD_TYPE=Release \
    -DTESKWIN_BUILD_TESTS=OFF -DTESKWIN_BUILD_BENCHMARKS=OFF -DCMAKE_INSTALL_PREFIX="$install"
  cmake --build "$build" -j"$(nproc)"
  rm -rf "$install"
  cmake --install "$build"
  cmake -S "$root/samples/showcase" -B "$build/showcase" -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH="$install"
  cmake --build "$build/showcase"
}

build_and_install x86_64
build_and_install i686

# 64-bit programs run at native speed here; 32-bit ones natively only on hosts that still can.
if [ "$(wine_run_mode x86_64)" = native ]; then arch=x86_64
elif [ "$(wine_run_mode i686)" != none ]; then arch=i686
else echo "run.sh: this host runs no Windows programs" >&2; exit 1
fi

rm -rf "$out"; mkdir -p "$out"
cp "$root/build/install-$arch/bin/TeskWin.dll" "$root/build/release-$arch/showcase/showcase.exe" "$out/"
trap wine_session_stop EXIT
wine_session_start "$root/build/release-$arch" "$arch"
status=0
(cd "$out" && wine_run showcase.exe "$(wine_run winepath.exe -w "$out" 2>/dev/null)" </dev/null) || status=$?
if [ -f "$out/showcase.bmp" ]; then
  bmptopnm "$out/showcase.bmp" 2>/dev/null | pnmtopng > "$out/showcase.png" && rm "$out/showcase.bmp"
fi
echo "showcase ($arch) exited with $status; output in $out:"
ls "$out"
exit $status
