#!/usr/bin/env bash
# Installs what is missing, builds the library and its tests for x86_64 and i686, and runs
# them under Wine: the whole x86_64 suite always, the i686 suite where this host can start
# 32-bit programs (natively, or through user-mode emulation set up here).
#   TESKWIN_I686_TESTS=all|smoke|none   how much of the i686 suite to run (default: all where
#                                       32-bit programs run natively, smoke under emulation)
# Extra arguments go to every ctest run, e.g. ./scripts/test.sh -R PList
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
builds=${TESKWIN_BUILD_DIR:-$root/build}
"$root/scripts/install-deps.sh"
. "$root/scripts/wine-session.sh"

# Under emulation each program runs about ten times slower, so only the smoke share runs:
# the tests whose names end in _Smoke, one or more per subsystem.
smoke_filter='_Smoke$|_i686$'

configure_and_build() {
  local arch=$1
  cmake -S "$root" -B "$builds/test-$arch" \
    -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchain-$arch-mingw.cmake" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTESKWIN_TEST_BUILD=ON
  cmake --build "$builds/test-$arch" -j"$(nproc)"
}

run_suite() {
  local arch=$1; shift
  local started=$SECONDS status=0
  wine_session_start "$builds/test-$arch" "$arch"
  (cd "$builds/test-$arch" && ctest --output-on-failure -j"$(nproc)" "$@") || status=$?
  wine_session_stop
  echo "test.sh: $arch suite took $((SECONDS - started)) s (status $status)"
  return $status
}

trap wine_session_stop EXIT
configure_and_build x86_64
configure_and_build i686

summary=()
status=0
run_suite x86_64 "$@" || status=1
summary+=("x86_64: whole suite, 64-bit Wine at native speed")

mode=$(wine_run_mode i686)
case $mode in
  native) share=${TESKWIN_I686_TESTS:-all} ;;
  emulated) share=${TESKWIN_I686_TESTS:-smoke} ;;
  *) share=none ;;
esac
case $share in
  all) run_suite i686 "$@" || status=1
       summary+=("i686: whole suite, 32-bit programs run $mode") ;;
  smoke) run_suite i686 -R "$smoke_filter" "$@" || status=1
         summary+=("i686: smoke share ($smoke_filter), 32-bit programs run $mode") ;;
  *) summary+=("i686: built, not run: this host cannot start 32-bit programs") ;;
esac

printf 'test.sh: %s\n' "${summary[@]}"
exit $status
