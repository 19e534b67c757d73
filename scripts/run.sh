#!/usr/bin/env bash
# The main job: builds and installs the library, builds the showcase application against
# the installed headers and import library alone, and runs it headless under Xvfb.
# Its log and screenshot are left in out/.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=$root/build/release
install=$root/build/install
out=$root/out
"$root/scripts/install-deps.sh"
toolchain=$root/cmake/toolchain-i686-mingw.cmake
cmake -S "$root" -B "$build" -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_BUILD_TYPE=Release \
  -DTESKWIN_BUILD_TESTS=OFF -DTESKWIN_BUILD_BENCHMARKS=OFF -DCMAKE_INSTALL_PREFIX="$install"
cmake --build "$build" -j"$(nproc)"
cmake --install "$build"
cmake -S "$root/samples/showcase" -B "$build/showcase" -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
  -DCMAKE_BUILD_TYPE=Release -DTESKWIN_ROOT="$install"
cmake --build "$build/showcase"

rm -rf "$out"; mkdir -p "$out"
cp "$install/bin/TeskWin.dll" "$build/showcase/showcase.exe" "$out/"
. "$root/scripts/wine-session.sh"
trap wine_session_stop EXIT
wine_session_start "$build"
(cd "$out" && wine showcase.exe "$(winepath -w "$out" 2>/dev/null)" </dev/null)
status=$?
if [ -f "$out/showcase.bmp" ]; then
  bmptopnm "$out/showcase.bmp" 2>/dev/null | pnmtopng > "$out/showcase.png" && rm "$out/showcase.bmp"
fi
echo "showcase exited with $status; output in $out:"
ls "$out"
