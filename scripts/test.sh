#!/usr/bin/env bash
# Installs what is missing, builds the library and its tests for x86_64 and i686, and runs
# them under Wine: the whole x86_64 suite always, the i686 suite where this host can start
# 32-bit programs (natively, or through user-mode emulation set up here).
#   TESKWIN_I686_TESTS=all|share|none   how much of the i686 suite to run (default: all where
#                                       32-bit programs run natively, the share under emulation)
# Extra arguments go to the ctest runs, e.g. ./scripts/test.sh -R PList
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
builds=${TESKWIN_BUILD_DIR:-$root/build}
"$root/scripts/install-deps.sh"
. "$root/scripts/wine-session.sh"

# Under emulation every process start costs minutes, so CTest's one process per case (and
# its discovery run per program) cannot finish in time. The share runs whole programs
# instead: the pure-logic ones, where pointer size and 32-bit arithmetic matter most.
share_programs="foundation_tests imaging_tests"
# qemu-user's i386 emulation itself dies (SIGSEGV in the emulator) on the threads that this
# test starts under Wine; it runs on every other route.
emulated_exclusions="-PRefCount.LockKeepsCountsExactAcrossThreads"
# Bounds for the emulated route, which has been seen to stall while a prefix is prepared.
emulated_prefix_limit=1500
emulated_program_limit=600

configure_and_build() {
  local arch=$1
  cmake -S "$root" -B "$builds/test-$arch" \
    -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchain-$arch-mingw.cmake" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTESKWIN_TEST_BUILD=ON
  cmake --build "$builds/test-$arch" -j"$(nproc)"
}

run_ctest() {
  local arch=$1; shift
  (cd "$builds/test-$arch" && ctest --output-on-failure -j"$(nproc)" "$@")
}

# The emulator sometimes cannot place Wine's shared user data page; the program never
# starts, so it is tried again (the placement differs each time).
emulator_fault="failed to map the shared user data"

# Runs each share program whole; a program that outlives its bound, or that the emulator
# cannot start, counts as not run; a failing test fails the run.
run_share_programs() {
  local arch=$1 program rc attempt status=0 log
  log=$(mktemp)
  for program in $share_programs; do
    local started=$SECONDS
    for attempt in 1 2 3; do
      rc=0
      timeout "$emulated_program_limit" "$builds/test-$arch/wine-exec.sh" \
        "$builds/test-$arch/bin/$program.exe" --gtest_brief=1 --gtest_filter="$emulated_exclusions" \
        >"$log" 2>&1 || rc=$?
      grep -q "$emulator_fault" "$log" || break
      rc=emulator
    done
    cat "$log"
    echo "test.sh: $arch $program took $((SECONDS - started)) s (status $rc)"
    case $rc in
      0) ;;
      124) echo "test.sh: $arch $program did not finish within $emulated_program_limit s: not run" ;;
      emulator) echo "test.sh: $arch $program: the emulator could not start it: not run" ;;
      *) status=1 ;;
    esac
  done
  rm -f "$log"
  return $status
}

# run_suite <arch> <all|share> [ctest args...]
run_suite() {
  local arch=$1 share=$2; shift 2
  local started=$SECONDS status=0
  if [ "$share" = share ]; then
    if ! TESKWIN_SETUP_DEADLINE=$(( $(date +%s) + emulated_prefix_limit )) \
        wine_session_start "$builds/test-$arch" "$arch"; then
      wine_session_stop
      share_outcome="not run: Wine could not prepare its prefix under emulation (bounded at $emulated_prefix_limit s)"
      echo "test.sh: $arch $share_outcome"
      return 0
    fi
    run_share_programs "$arch" || status=$?
    share_outcome="whole programs $share_programs (status $status)"
  else
    wine_session_start "$builds/test-$arch" "$arch"
    run_ctest "$arch" "$@" || status=$?
  fi
  wine_session_stop
  echo "test.sh: $arch suite took $((SECONDS - started)) s (status $status)"
  return $status
}

trap wine_session_stop EXIT
configure_and_build x86_64
configure_and_build i686

summary=()
status=0
run_suite x86_64 all "$@" || status=1
summary+=("x86_64: whole suite, 64-bit Wine at native speed")

mode=$(wine_run_mode i686)
case $mode in
  native) share=${TESKWIN_I686_TESTS:-all} ;;
  emulated) share=${TESKWIN_I686_TESTS:-share} ;;
  *) share=none ;;
esac
case $share in
  all) run_suite i686 all "$@" || status=1
       summary+=("i686: whole suite, 32-bit programs run $mode") ;;
  share) share_outcome=""
         run_suite i686 share || status=1
         summary+=("i686 (32-bit programs run $mode): $share_outcome") ;;
  *) summary+=("i686: built, not run: this host cannot start 32-bit programs") ;;
esac

printf 'test.sh: %s\n' "${summary[@]}"
exit $status
