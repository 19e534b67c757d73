#!/usr/bin/env bash
# Installs what is missing, builds the library and its tests, and runs them all under Wine.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TESKWIN_BUILD_DIR:-$root/build/test}
"$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" \
  -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchain-i686-mingw.cmake" \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTESKWIN_TEST_BUILD=ON
cmake --build "$build" -j"$(nproc)"
. "$root/scripts/wine-session.sh"
trap wine_session_stop EXIT
wine_session_start "$build"
cd "$build"
ctest --output-on-failure -j"$(nproc)" "$@"
