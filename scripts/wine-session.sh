#!/usr/bin/env bash
# Sourced by the run and test scripts: one Xvfb display and one persistent wineserver
# for a whole run, on a Wine prefix that lives in the build folder.
#   wine_loader_for <arch>                 the Wine loader that runs programs of x86_64 or i686
#   wine_can_run <arch>                    true when this host can start that loader's programs
#   wine_session_start <build-dir> <arch>  exports DISPLAY, WINEPREFIX, WINELOADER, WINESERVER;
#                                          fails when the prefix cannot be prepared (by the time
#                                          TESKWIN_SETUP_DEADLINE, in epoch seconds, if set)
#   wine_run <program> [args...]           runs a Windows program in the session
#   wine_session_stop
#
# The loaders are called directly: the `wine` wrapper picks the 32-bit loader whenever
# wine32 is installed, and this host may not be able to run it.

wine_loader_for() {
  case $1 in
    x86_64) echo /usr/lib/wine/wine64 ;;
    i686) echo /usr/lib/wine/wine ;;
    *) echo "wine-session: unknown architecture $1" >&2; return 1 ;;
  esac
}

# The 64-bit server serves both loaders; the 32-bit one cannot start on hosts without
# 32-bit support.
wine_server_path() {
  if [ -x /usr/lib/wine/wineserver64 ]; then echo /usr/lib/wine/wineserver64
  else echo /usr/lib/wine/wineserver32; fi
}

# Where the kernel cannot run i386 programs, user-mode emulation can, once an i386 ELF
# handler is registered with binfmt_misc (root only; nothing happens otherwise).
wine_enable_i386_emulation() {
  local misc=/proc/sys/fs/binfmt_misc
  [ -e "$misc/qemu-i386" ] && return 0
  [ "$(id -u)" = 0 ] && [ -x /usr/bin/qemu-i386-static ] || return 1
  [ -e "$misc/register" ] || mount -t binfmt_misc binfmt_misc "$misc" 2>/dev/null || return 1
  [ -e "$misc/qemu-i386" ] && return 0
  printf '%s' ':qemu-i386:M::\x7fELF\x01\x01\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x02\x00\x03\x00:\xff\xff\xff\xff\xff\xfe\xfe\x00\xff\xff\xff\xff\xff\xff\xff\xff\xfe\xff\xff\xff:/usr/bin/qemu-i386-static:F' \
    > "$misc/register" 2>/dev/null
}

# How a loader's programs start here: "native", "emulated" (binfmt + qemu), or "none".
wine_run_mode() {
  local loader
  loader=$(wine_loader_for "$1") || return 1
  [ -x "$loader" ] || { echo none; return 0; }
  if [ "$1" = i686 ] && [ -e /proc/sys/fs/binfmt_misc/qemu-i386 ]; then echo emulated
  elif "$loader" --version >/dev/null 2>&1; then echo native
  elif [ "$1" = i686 ] && wine_enable_i386_emulation && "$loader" --version >/dev/null 2>&1; then echo emulated
  else echo none
  fi
}

wine_can_run() {
  [ "$(wine_run_mode "$1")" != none ]
}

wine_run() {
  "$WINELOADER" "$@"
}

# One set-up step; a step still running at TESKWIN_SETUP_DEADLINE fails.
wine_setup_step() {
  if [ -z "${TESKWIN_SETUP_DEADLINE:-}" ]; then
    "$WINELOADER" "$@" >/dev/null 2>&1 </dev/null
    return 0
  fi
  local left=$(( TESKWIN_SETUP_DEADLINE - $(date +%s) ))
  [ "$left" -gt 0 ] || return 1
  timeout "$left" "$WINELOADER" "$@" >/dev/null 2>&1 </dev/null
  [ $? != 124 ]
}

# Runs a command with the i386 emulation handler switched off, if it is on, and back on after.
wine_without_i386_emulation() {
  local handler=/proc/sys/fs/binfmt_misc/qemu-i386 status=0
  if [ -w "$handler" ] && grep -q '^enabled' "$handler"; then
    echo 0 > "$handler"
    "$@" || status=$?
    echo 1 > "$handler"
    return $status
  fi
  "$@"
}

# wine_session_prepare_prefix <prefix> <arch>
wine_session_prepare_prefix() {
  local prefix=$1 arch=$2
  [ -f "$prefix/.teskwin-ready" ] && return 0
  rm -rf "$prefix"
  mkdir -p "$prefix"
  # A 64-bit prefix warns that its 32-bit half could not be set up: harmless for 64-bit
  # programs. Emulation stays off meanwhile, or that half alone takes many minutes.
  if [ "$arch" = x86_64 ]; then
    wine_without_i386_emulation wine_setup_step wineboot.exe -i || return 1
  else
    # Under emulation the loader now and then fails to place its shared page and stops at
    # once; another try places it elsewhere.
    local attempt
    for attempt in 1 2 3; do
      wine_setup_step wineboot.exe -i || return 1
      [ -d "$prefix/drive_c/windows" ] && break
    done
    [ -d "$prefix/drive_c/windows" ] || return 1
  fi
  # Without a window manager, hiding a top-level window stalls unless Wine manages none;
  # a crash must print a backtrace and exit instead of waiting on a dialog.
  wine_setup_step reg.exe add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f || return 1
  wine_setup_step reg.exe add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f || return 1
  [ -d "$prefix/drive_c/windows/Fonts" ] || return 1
  # Stable system fonts, whatever the host has.
  cp /usr/share/wine/fonts/*.ttf "$prefix/drive_c/windows/Fonts/" 2>/dev/null
  "$WINESERVER" -w
  touch "$prefix/.teskwin-ready"
}

wine_session_start() {
  local build
  build=$(cd "$1" && pwd)
  export WINEPREFIX=$build/wineprefix
  export WINEDEBUG=-all
  export WINEDLLOVERRIDES="mscoree,mshtml="
  WINELOADER=$(wine_loader_for "$2") || return 1
  WINESERVER=$(wine_server_path)
  export WINELOADER WINESERVER
  local n=${TESKWIN_DISPLAY:-$(( 90 + RANDOM % 400 ))}
  while [ -e /tmp/.X11-unix/X$n ] || [ -e /tmp/.X$n-lock ]; do n=$((n + 1)); done
  Xvfb :$n -screen 0 1280x1024x24 -nolisten tcp >/dev/null 2>&1 &
  WINE_SESSION_XVFB=$!
  for _ in $(seq 100); do [ -e /tmp/.X11-unix/X$n ] && break; sleep 0.1; done
  export DISPLAY=:$n
  wine_session_prepare_prefix "$WINEPREFIX" "$2" || return 1
  "$WINESERVER" -p
  # Warm up, so that Wine's service processes do not inherit a test's output pipe.
  wine_setup_step cmd.exe /c exit
}

# Safe to call twice, and from an exit trap under set -e: nothing in it may fail the caller.
wine_session_stop() {
  "${WINESERVER:-$(wine_server_path)}" -k 2>/dev/null || true
  if [ -n "${WINE_SESSION_XVFB:-}" ]; then
    kill "$WINE_SESSION_XVFB" 2>/dev/null || true
    wait "$WINE_SESSION_XVFB" 2>/dev/null || true
    WINE_SESSION_XVFB=
  fi
  return 0
}
