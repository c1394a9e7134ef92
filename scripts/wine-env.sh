# Sourced by the test and demo scripts: one Wine prefix inside the build
# directory, a virtual display when there is none, and a warm wineserver.
# Expects BUILD_ROOT to be set.

# The i686 build lends its wrappers of the 32-bit Wine (cmake/wine32.cmake).
if [ -x "$BUILD_ROOT/wine32/wine" ]; then export PATH="$BUILD_ROOT/wine32:$PATH"; fi
# One prefix for the build; a scenario that needs a fresh one names it.
export WINEPREFIX="${VELDOR_WINEPREFIX:-$BUILD_ROOT/wineprefix}"
export WINEARCH=win64
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="

VELDOR_XVFB_PID=""
if [ -z "${DISPLAY:-}" ] || [ "${VELDOR_HEADLESS:-0}" = 1 ]; then
  for n in $(seq 91 140); do
    if [ ! -e "/tmp/.X11-unix/X$n" ] && [ ! -e "/tmp/.X$n-lock" ]; then
      Xvfb ":$n" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
      VELDOR_XVFB_PID=$!
      export DISPLAY=":$n"
      break
    fi
  done
  for _ in $(seq 1 50); do
    [ -e "/tmp/.X11-unix/X${DISPLAY#:}" ] && break
    sleep 0.1
  done
fi

if [ ! -f "$WINEPREFIX/system.reg" ]; then
  echo "wine: creating prefix $WINEPREFIX"
  mkdir -p "$WINEPREFIX"
  wine wineboot -i >/dev/null 2>&1 || true
  wineserver -w || true
fi
mkdir -p "$WINEPREFIX/drive_c/windows/Fonts"
cp -n /usr/share/wine/fonts/* "$WINEPREFIX/drive_c/windows/Fonts/" 2>/dev/null || true

# Keep one server alive for the whole run so each program starts fast.
wineserver -p >/dev/null 2>&1 || true
wine cmd /c exit </dev/null >/dev/null 2>&1 || true

veldor_wine_cleanup() {
  wineserver -k >/dev/null 2>&1 || true
  if [ -n "$VELDOR_XVFB_PID" ]; then kill "$VELDOR_XVFB_PID" 2>/dev/null || true; fi
}
