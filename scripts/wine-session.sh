#!/usr/bin/env bash
# Sourced by the run and test scripts: one Xvfb display and one persistent wineserver
# for a whole run, on a Wine prefix that lives in the build folder.
#   wine_session_start <build-dir>   exports DISPLAY and WINEPREFIX
#   wine_session_stop

wine_session_prepare_prefix() {
  local prefix=$1
  [ -f "$prefix/.teskwin-ready" ] && return 0
  rm -rf "$prefix"
  mkdir -p "$prefix"
  WINEPREFIX=$prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" wineboot -i >/dev/null 2>&1 </dev/null
  # Without a window manager, hiding a top-level window stalls unless Wine manages none;
  # a crash must print a backtrace and exit instead of waiting on a dialog.
  WINEPREFIX=$prefix WINEDEBUG=-all wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null 2>&1 </dev/null
  WINEPREFIX=$prefix WINEDEBUG=-all wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null 2>&1 </dev/null
  # Stable system fonts, whatever the host has.
  cp /usr/share/wine/fonts/*.ttf "$prefix/drive_c/windows/Fonts/" 2>/dev/null
  WINEPREFIX=$prefix wineserver -w
  touch "$prefix/.teskwin-ready"
}

wine_session_start() {
  local build
  build=$(cd "$1" && pwd)
  export WINEPREFIX=$build/wineprefix
  export WINEDEBUG=-all
  export WINEDLLOVERRIDES="mscoree,mshtml="
  local n=${TESKWIN_DISPLAY:-$(( 90 + RANDOM % 400 ))}
  while [ -e /tmp/.X11-unix/X$n ] || [ -e /tmp/.X$n-lock ]; do n=$((n + 1)); done
  Xvfb :$n -screen 0 1280x1024x24 -nolisten tcp >/dev/null 2>&1 &
  WINE_SESSION_XVFB=$!
  for _ in $(seq 100); do [ -e /tmp/.X11-unix/X$n ] && break; sleep 0.1; done
  export DISPLAY=:$n
  wine_session_prepare_prefix "$WINEPREFIX"
  wineserver -p
  # Warm up, so that Wine's service processes do not inherit a test's output pipe.
  wine cmd /c exit </dev/null >/dev/null 2>&1
}

wine_session_stop() {
  wineserver -k 2>/dev/null
  [ -n "${WINE_SESSION_XVFB:-}" ] && kill "$WINE_SESSION_XVFB" 2>/dev/null
  wait 2>/dev/null
  return 0
}
