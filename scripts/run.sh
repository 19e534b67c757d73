#!/usr/bin/env bash
# The main job: builds and installs the library for x86_64 and i686 (one install tree each),
# builds the samples and the image workbench against an install tree alone through
# find_package, and runs the workbench headless under Xvfb, with the architecture this host
# runs fastest, on its demo script. It leaves in out/: a screenshot of the frame after each
# step (step-NN-*.png), the pictures the script saved, the filter sample's result, and
# workbench.log with the time of every step.
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
  cmake -S "$root/samples" -B "$build/samples" -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH="$install"
  cmake --build "$build/samples" -j"$(nproc)"
  # The programs find the library beside them.
  cp "$install/bin/TeskWin.dll" "$build/samples/bin/"
}

build_and_install x86_64
build_and_install i686

# 64-bit programs run at native speed here; 32-bit ones natively only on hosts that still can.
if [ "$(wine_run_mode x86_64)" = native ]; then arch=x86_64
elif [ "$(wine_run_mode i686)" != none ]; then arch=i686
else echo "run.sh: this host runs no Windows programs" >&2; exit 1
fi
bin=$root/build/release-$arch/samples/bin

rm -rf "$out"; mkdir -p "$out"
cp "$root/samples/workbench/demo.wbs" "$out/"
trap wine_session_stop EXIT
wine_session_start "$root/build/release-$arch" "$arch"
status=0
(cd "$out" && timeout 600 "$WINELOADER" "$bin/workbench.exe" --script demo.wbs </dev/null) || status=$?
# The console-less sample filters one of the pictures the workbench saved.
filter_status=0
if [ -f "$out/scene-16-colours.bmp" ]; then
  (cd "$out" && timeout 120 "$WINELOADER" "$bin/filter.exe" scene-16-colours.bmp filtered.bmp </dev/null) || filter_status=$?
fi
wine_session_stop
for shot in "$out"/step-*.bmp; do
  [ -f "$shot" ] || continue
  bmptopnm "$shot" 2>/dev/null | pnmtopng > "${shot%.bmp}.png" && rm "$shot"
done
echo "workbench ($arch) exited with $status, the filter sample with $filter_status; output in $out:"
ls "$out"
echo "Timings (from $out/workbench.log):"
grep -E 'step [0-9]+:|done in|failed|FAILED|finished' "$out/workbench.log" || true
[ "$status" = 0 ] && [ "$filter_status" = 0 ]
