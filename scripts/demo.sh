#!/usr/bin/env bash
# Builds what is missing and runs veldor.exe under Wine against the
# simulated controller, which is linked as COM1 of the Wine prefix in the
# build folder. The controller drives the route of the sample survey
# (docs/package/Sample.DAT, made by scripts/make-sample-survey.sh) again.
#
# With a display: the program opens on it; use it as you like (File > Open
# build/demo/Sample.DAT shows the sample, F1 starts recording, F2 stops it,
# File > Save As writes a .DAT file); the script ends when the program does.
#
# Without one (or with VELDOR_HEADLESS=1): the program runs on a virtual
# display, driven by keys and menus as an operator would: the frame
# maximised with the Listing, the Chart and the Plot side by side, File >
# Open of the sample survey, F1 at one record a second for about
# VELDOR_DEMO_SECONDS (15) seconds, F2, File > Save As through the file
# dialog, the Plot's Zoom Auto, File > Exit. It leaves screenshots, the .DAT
# file and the logs in build/demo/ and prints where they are.
#
# VELDOR_DEMO_REPLAY=SURVEY.DAT: that saved survey is opened instead of the
# sample, and the controller plays it back, at VELDOR_DEMO_REPLAY_SPEED (1)
# times its pace, instead of driving the route.
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD_ROOT_DIR="${VELDOR_BUILD_ROOT:-$ROOT/build}"
SECONDS_TO_RECORD="${VELDOR_DEMO_SECONDS:-15}"
NATIVE="$BUILD_ROOT_DIR/native"
WIN64="$BUILD_ROOT_DIR/win64"
DEMO="$BUILD_ROOT_DIR/demo"

bash "$ROOT/scripts/install-deps.sh"
cmake -S "$ROOT" -B "$NATIVE" -G Ninja >/dev/null
ninja -C "$NATIVE" controller-sim
cmake -S "$ROOT" -B "$WIN64" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$ROOT/cmake/toolchain-mingw64.cmake" >/dev/null
ninja -C "$WIN64" veldor veldor_probe status_hook

SIM="$NATIVE/tools/controller-sim/controller-sim"
EXE="$WIN64/veldor.exe"
PROBE="$WIN64/tests/e2e/veldor_probe.exe"
HOOK_DLL="$WIN64/tests/e2e/status_hook.dll"
cp "$ROOT/tests/data/cal/default_curve.cal" "$WIN64/Default.cal"

rm -rf "$DEMO"
mkdir -p "$DEMO"
HEADLESS=0
if [ -z "${DISPLAY:-}" ] || [ "${VELDOR_HEADLESS:-0}" = 1 ]; then HEADLESS=1; fi

export BUILD_ROOT="$WIN64"
# shellcheck source=wine-env.sh
source "$ROOT/scripts/wine-env.sh"
INI="$WINEPREFIX/drive_c/ProgramData/TREVAN/VELDOR/VELDOR.ini"
SIM_PID=""
WATCH_PID=""
cleanup() {
  if [ -n "$WATCH_PID" ]; then kill "$WATCH_PID" 2>/dev/null || true; fi
  if [ -n "$SIM_PID" ]; then kill "$SIM_PID" 2>/dev/null || true; fi
  if [ -f "$INI" ]; then cp "$INI" "$DEMO/VELDOR.ini"; fi
  veldor_wine_cleanup
  if [ -n "$SIM_PID" ]; then wait "$SIM_PID" 2>/dev/null || true; fi
}
trap cleanup EXIT
fail() {
  echo "demo: $*" >&2
  import -window root "$DEMO/failure.png" 2>/dev/null || true
  exit 1
}

# The simulator on a pseudo-terminal; COM1 of the prefix leads to its link.
# It drives the sample survey's pattern (as make-sample-survey.sh does).
SURVEY="$ROOT/docs/package/Sample.DAT"
SIM_ARGS=(--lanes 7 --lane-length 320 --lane-spacing 120 --speed 25 --level 380 --fall 150)
if [ -n "${VELDOR_DEMO_REPLAY:-}" ]; then
  [ -f "$VELDOR_DEMO_REPLAY" ] || fail "no survey $VELDOR_DEMO_REPLAY to replay"
  SURVEY="$VELDOR_DEMO_REPLAY"
  SIM_ARGS=(--replay "$VELDOR_DEMO_REPLAY" --speed "${VELDOR_DEMO_REPLAY_SPEED:-1}")
  echo "demo: the controller replays $VELDOR_DEMO_REPLAY"
fi
cp "$SURVEY" "$DEMO/"
OPENED="$DEMO/$(basename "$SURVEY")"
"$SIM" --link "$DEMO/COM1" --log "$DEMO/controller.log" --record-file "$DEMO/sent-samples.txt" \
  "${SIM_ARGS[@]}" >"$DEMO/controller-sim.out" 2>&1 &
SIM_PID=$!
for _ in $(seq 1 100); do [ -e "$DEMO/COM1" ] && break; sleep 0.05; done
[ -e "$DEMO/COM1" ] || fail "the simulator made no pty"
current="$( (wine reg query 'HKLM\Software\Wine\Ports' /v COM1 2>/dev/null || true) | tr -d '\r' |
  awk '$1 == "COM1" {print $3}')"
if [ "$current" != "$DEMO/COM1" ]; then
  wine reg add 'HKLM\Software\Wine\Ports' /v COM1 /t REG_SZ /d "$DEMO/COM1" /f >/dev/null 2>&1
fi
# A new session links COM1 afresh.
wineserver -k >/dev/null 2>&1 || true
wineserver -w >/dev/null 2>&1 || true
wineserver -p >/dev/null 2>&1 || true
wine cmd /c exit </dev/null >/dev/null 2>&1 || true

if [ "$HEADLESS" = 0 ]; then
  echo "demo: VELDOR opens on $DISPLAY with the simulated controller on COM1."
  echo "demo: File > Open $OPENED shows a survey; F1 starts recording, F2 stops it,"
  echo "demo: File > Save As writes a .DAT file; close it to end."
  wine "$EXE" >"$DEMO/wine.log" 2>&1 || true
  echo
  echo "controller log:   $DEMO/controller.log"
  echo "samples sent:     $DEMO/sent-samples.txt"
  echo "settings file:    $DEMO/VELDOR.ini"
  exit 0
fi

# ---- Headless: a short survey on the virtual display -------------------------------------
DESKTOP=VELDOR
probe() { wine "$PROBE" -d "$DESKTOP" "$@" 2>/dev/null; }
# Waits for the conditions of veldor_probe's "wait"; fails with the message.
expect() {
  local message="$1"
  shift
  probe wait "$@" >"$DEMO/last_probe.txt" || fail "$message"
}
key() { xdotool key --delay 80 "$@"; }
samples_sent() { grep -c '^[0-9]* TX RA ' "$DEMO/controller.log" 2>/dev/null || true; }

# A fresh settings file at one record a second, the frame maximised: the
# Listing top left, wide enough for whole rows, the Chart under it, the Plot
# on the right.
mkdir -p "$(dirname "$INI")"
printf '%s\r\n' "[General]" "Record Interval Seconds=1" "[Main window]" "Maximised=1" "Show tags=0" \
  "[Listing]" "Origin X=0" "Origin Y=0" "Width=660" "Height=428" \
  "[Chart]" "Origin X=0" "Origin Y=428" "Width=660" "Height=250" \
  "[Plot]" "Origin X=660" "Origin Y=0" "Width=340" "Height=678" >"$INI"
DAT="$DEMO/survey.DAT"

wine explorer "/desktop=$DESKTOP,1024x768" >>"$DEMO/wine.log" 2>&1 &
wine "$PROBE" -d "$DESKTOP" watch 600 "$(winepath -w "$HOOK_DLL")" "$(winepath -w "$DEMO/status-lines.log")" \
  >"$DEMO/watch.log" 2>&1 &
WATCH_PID=$!
for _ in $(seq 1 300); do grep -q '^0 hooked$' "$DEMO/watch.log" 2>/dev/null && break; sleep 0.1; done
wine explorer "/desktop=$DESKTOP,1024x768" "$EXE" >>"$DEMO/wine.log" 2>&1 &
expect "the program did not start" -t 60 frames=1 window=
echo "demo: VELDOR is up on a virtual display; the sign-on box closes with a click"
xdotool mousemove 512 384 click 1
expect "the sign-on box did not close" -t 20 nowindow= enabled=1
win="$(xdotool search --name "$DESKTOP - Wine desktop" | sed -n 1p)"
[ -n "$win" ] || fail "no Wine desktop window"
xdotool windowfocus --sync "$win"

echo "demo: File > Open $(basename "$OPENED"); the Plot fits its records (Zoom Auto)"
key ctrl+o
expect "no Open Data File dialog" -t 15 window="Open Data File"
xdotool type --delay 20 "$(winepath -w "$OPENED")"
key Return
expect "the survey was not opened" -t 20 nowindow="Open Data File" "caption=VELDOR [ $(basename "$OPENED") ]"
key F1
expect "F1 did not start recording" -t 10 pane1=Recording
echo "demo: F1, recording one sample a second for about $SECONDS_TO_RECORD seconds"
halfway=$(($(samples_sent) + SECONDS_TO_RECORD / 2))
target=$(($(samples_sent) + SECONDS_TO_RECORD))
deadline=$((SECONDS + SECONDS_TO_RECORD + 30))
until [ "$(samples_sent)" -ge "$target" ]; do
  [ $SECONDS -lt $deadline ] || fail "the simulator stopped sending"
  if [ -n "$halfway" ] && [ "$(samples_sent)" -ge "$halfway" ]; then
    import -window root "$DEMO/recording.png"
    halfway=""
  fi
  sleep 0.2
done
key F2
expect "F2 did not stop recording" -t 10 pane1=Idle
echo "demo: F2, recording stopped; File > Save As"
key alt+f
expect "the File menu did not open" -t 5 window=
key a
expect "no Save Data File dialog" -t 15 window="Save Data File..."
xdotool type --delay 20 "$(winepath -w "$DAT")"
key Return
expect "the survey was not saved" -t 20 nowindow="Save Data File..." "caption=VELDOR [ survey.DAT ]" \
  "pane0=Data written to file 'survey.DAT'"
[ -f "$DAT" ] || fail "no $DAT"
echo "demo: the Plot's Zoom Auto, fitting the route with the new records"
expect "the frame did not take input" -t 5 enabled=1
origin="$(sed -n 's/^client=Veldor_Plot|\([0-9-]*\),\([0-9-]*\),.*/\1 \2/p' "$DEMO/last_probe.txt")"
[ -n "$origin" ] || fail "no Plot window"
xdotool mousemove $((${origin% *} + 4 + 29 * 8 + 12)) $((${origin#* } + 16)) click 1
expect "Zoom Auto did not answer" -t 5 "pane0=Plot auto zoom"
# The gauge shows the last record on the tick after it.
records=$(od -An -t d4 -j 1209 -N 4 "$DAT" | tr -d ' ')
gauge="$(python3 "$ROOT/tests/e2e/check_dat.py" --gauge "$DAT")"
probe wait -t 5 "pane2=$gauge" >/dev/null || true
import -window root "$DEMO/survey.png"
key alt+r
expect "the Record menu did not open" -t 5 window=
import -window root "$DEMO/record-menu.png"
key Escape Escape
expect "the Record menu did not close" -t 5 nowindow=

key alt+f
expect "the File menu did not open" -t 5 window=
key x
for _ in $(seq 1 150); do pgrep -f "^$EXE" >/dev/null 2>&1 || break; sleep 0.1; done
pgrep -f "^$EXE" >/dev/null 2>&1 && fail "the program did not end"

# The coverage report of the survey, beside the screenshots.
ninja -C "$NATIVE" veldor_export >/dev/null
cp "$ROOT/tests/data/cal/default_curve.cal" "$DEMO/Default.cal"
"$NATIVE/tools/veldor-export/veldor-export" "$DAT" --format report --threshold 50 -o "$DEMO/survey-report.html" \
  >"$DEMO/survey-report.log" 2>&1 || echo "demo: no coverage report, see $DEMO/survey-report.log"

echo
echo "demo: $records records stored and saved; the program has ended."
echo "screenshots:       $DEMO/survey.png  (saved; also recording.png, record-menu.png)"
echo "data file:         $DAT"
echo "coverage report:   $DEMO/survey-report.html"
echo "status lines:      $DEMO/status-lines.log"
echo "controller log:    $DEMO/controller.log"
echo "samples sent:      $DEMO/sent-samples.txt"
echo "settings file:     $DEMO/VELDOR.ini"
