#!/usr/bin/env bash
# End-to-end run of veldor.exe under Wine on a virtual display, with the
# controller simulator on COM1:
#   - start with an empty settings file: banner, then "MS 1", "MN 10", "MC 1",
#     "MI 1" and "OP 1" reach the controller;
#   - F1 starts recording (the TZR4100 channel is set and stepped),
#     F2 stops it (no more stepping);
#   - File > Exit asks to save (answered No), sends "OP 0" and writes the
#     "Main window" keys.
# Screenshots, the simulator's log and the settings file are kept in
# <win64 build>/e2e. Exits non-zero on the first failed check.
#
# usage: run_e2e.sh [WIN64_BUILD_DIR] [NATIVE_BUILD_DIR]
set -euo pipefail

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
BUILD_ROOT="$(cd "${1:-$ROOT/build/win64}" && pwd)"
NATIVE="$(cd "${2:-$ROOT/build/native}" && pwd)"
SIM="$NATIVE/tools/controller-sim/controller-sim"
EXE="$BUILD_ROOT/veldor.exe"
ART="$BUILD_ROOT/e2e"
[ -x "$SIM" ] || { echo "no controller-sim at $SIM"; exit 2; }
[ -f "$EXE" ] || { echo "no veldor.exe at $EXE"; exit 2; }
rm -rf "$ART"
mkdir -p "$ART"

export BUILD_ROOT VELDOR_HEADLESS=1
# shellcheck source=../../scripts/wine-env.sh
source "$ROOT/scripts/wine-env.sh"
INI="$WINEPREFIX/drive_c/ProgramData/TREVAN/VELDOR/VELDOR.ini"
SIM_LOG="$ART/sim.log"
SIM_PID=""

cleanup() {
  if [ -n "$SIM_PID" ]; then kill "$SIM_PID" 2>/dev/null || true; fi
  [ -f "$INI" ] && cp "$INI" "$ART/VELDOR.ini"
  veldor_wine_cleanup
}
trap cleanup EXIT

fail() { echo "FAIL: $*"; shot failure; exit 1; }
pass() { echo "ok: $*"; }
shot() { import -window root "$ART/$1.png" 2>/dev/null || true; }

# Waits up to $2 seconds for a line of the simulator's log matching $1.
wait_log() {
  local deadline=$((SECONDS + $2))
  while [ $SECONDS -lt $deadline ]; do
    grep -q -- "$1" "$SIM_LOG" 2>/dev/null && return 0
    sleep 0.2
  done
  return 1
}
# The bodies received from the program, in order, one a line.
received() { sed -n "s/^[0-9]* RX \(.*\)$/\1/p" "$SIM_LOG" | grep -v -x -e KA -e NA; }
running() { pgrep -f "^$EXE" >/dev/null 2>&1; }

# The program's folder holds the default calibration curve beside it.
[ -f "$BUILD_ROOT/Default.cal" ] || cp "$ROOT/tests/data/cal/default_curve.cal" "$BUILD_ROOT/Default.cal"
rm -f "$INI"

"$SIM" --link "$ART/pty" --log "$SIM_LOG" >"$ART/sim.out" 2>&1 &
SIM_PID=$!
for _ in $(seq 1 50); do [ -e "$ART/pty" ] && break; sleep 0.1; done
[ -e "$ART/pty" ] || fail "simulator made no pty"

# COM1 is linked to the pty at the next session start.
wine reg add 'HKLM\Software\Wine\Ports' /v COM1 /t REG_SZ /d "$ART/pty" /f >/dev/null 2>&1
wineserver -k >/dev/null 2>&1 || true
wineserver -w >/dev/null 2>&1 || true
wineserver -p >/dev/null 2>&1 || true
wine cmd /c exit </dev/null >/dev/null 2>&1 || true

wine explorer /desktop=VELDOR,1024x768 "$EXE" >"$ART/wine.log" 2>&1 &

# ---- Start-up: banner, accessory set-up, then "OP 1" ----------------------------------
wait_log "RX OP 1" 30 || fail "no OP 1 from the program"
sleep 0.5
shot signon  # the sign-on box stands for 4 seconds from the frame's start
grep -q "BANNER VELDOR (Software)" "$SIM_LOG" || fail "no banner"
first="$(received | head -5 | tr '\n' '|')"
[ "$first" = "MS 1|MN 10|MC 1|MI 1|OP 1|" ] || fail "start-up frames were: $first"
banner_line=$(grep -n "BANNER VELDOR" "$SIM_LOG" | head -1 | cut -d: -f1)
ms_line=$(grep -n "RX MS 1" "$SIM_LOG" | head -1 | cut -d: -f1)
[ "$banner_line" -lt "$ms_line" ] || fail "banner after the first frame"
pass "banner, MS 1, MN 10, MC 1, MI 1, OP 1"

sleep 4  # the sign-on box closes after 4 seconds
shot started
WIN="$(xdotool search --name "VELDOR - Wine desktop" | head -1)"
[ -n "$WIN" ] || fail "no Wine desktop window"
xdotool windowfocus --sync "$WIN"

# ---- F1: recording starts; the TZR4100 channel is set and stepped ---------------------
before=$(received | wc -l)
xdotool key F1
sleep 1
after_start="$(received | tail -n +$((before + 1)) | head -2 | tr '\n' '|')"
[ "$after_start" = "MC 1|MI 0|" ] || fail "F1 sent: $after_start"
# The first record comes after the 5-second interval and steps the channel.
deadline=$((SECONDS + 12))
until received | tail -n +$((before + 3)) | grep -q "^MC "; do
  [ $SECONDS -lt $deadline ] || fail "no channel step while recording"
  sleep 0.5
done
shot recording
pass "F1 starts recording"

# ---- F2: recording stops; no more steps -----------------------------------------------
xdotool key F2
sleep 1
steps=$(received | grep -c "^MC " || true)
sleep 11
steps_later=$(received | grep -c "^MC " || true)
[ "$steps" = "$steps_later" ] || fail "channel still stepping after F2"
shot stopped
pass "F2 stops recording"

# ---- Exit: the question, "OP 0", the window state -------------------------------------
xdotool key alt+f
sleep 0.5
shot file_menu
xdotool key x
wait_log "RX OP 0" 10 || fail "no OP 0 at exit"
sleep 1.5
shot exit_question
xdotool key n
deadline=$((SECONDS + 15))
while running; do
  [ $SECONDS -lt $deadline ] || fail "program still running after exit"
  sleep 0.3
done
pass "OP 0 sent, program ended"

[ -f "$INI" ] || fail "no settings file written"
for key in "Show listing=1" "Show plot=1" "Show chart=1" "Show tags=1" "Maximised=0" \
           "Origin X=" "Origin Y=" "Width=" "Height="; do
  sed -n '/^\[Main window\]/,/^\[/p' "$INI" | grep -q "^$key" || fail "Main window lacks $key"
done
grep -q "^\[Listing\]" "$INI" || fail "the Listing stored no place"
pass "Main window keys written"
echo "all end-to-end checks passed; artefacts in $ART"
