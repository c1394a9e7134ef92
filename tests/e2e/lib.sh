# shellcheck shell=bash
# Shared by the end-to-end scenarios: sourced by each scenario_*.sh after
# it has set E2E_SCENARIO. The scenario then drives veldor.exe under Wine,
# on a virtual display, with the controller simulator linked as COM1.
#
# Arguments of every scenario: [WINDOWS_BUILD_DIR] [NATIVE_BUILD_DIR], the
# Windows build being the i686 one (build/win32) unless another is named.
# Artefacts (screenshots, the simulator's log, the status lines seen, the
# settings file, files written) stay in <Windows build>/e2e/<scenario>/.
#
# Run by run_e2e.sh, the scenarios share its virtual display; run alone, a
# scenario starts its own. Each scenario starts and ends its own wineserver
# session, so no program outlives it.

E2E_ROOT_DIR="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
BUILD_ROOT="$(cd "${1:-$E2E_ROOT_DIR/build/win32}" && pwd)"
E2E_NATIVE="$(cd "${2:-$E2E_ROOT_DIR/build/native}" && pwd)"
SIM="$E2E_NATIVE/tools/controller-sim/controller-sim"
EXE="$BUILD_ROOT/veldor.exe"
PROBE="$BUILD_ROOT/tests/e2e/veldor_probe.exe"
HOOK_DLL="$BUILD_ROOT/tests/e2e/status_hook.dll"
CHECK_DAT="$E2E_ROOT_DIR/tests/e2e/check_dat.py"
E2E_DIR="$BUILD_ROOT/e2e"
ART="$E2E_DIR/$E2E_SCENARIO"
# COM1 of the prefix leads to this link, which each simulator remakes to its
# own pseudo-terminal; COM3 leads to a path where no device will ever be,
# COM4 to a device that is no serial line.
COM1_LINK="$E2E_DIR/com1"
COM3_PATH="$E2E_DIR/no-such-device"
COM4_PATH=/dev/null
DESKTOP=VELDOR

[ -x "$SIM" ] || { echo "no controller-sim at $SIM"; exit 2; }
[ -f "$EXE" ] || { echo "no veldor.exe at $EXE"; exit 2; }
[ -f "$PROBE" ] || { echo "no veldor_probe.exe at $PROBE"; exit 2; }
[ -f "$HOOK_DLL" ] || { echo "no status_hook.dll at $HOOK_DLL"; exit 2; }
rm -rf "$ART"
mkdir -p "$ART"
exec > >(tee "$ART/scenario.log") 2>&1

export BUILD_ROOT
# run_e2e.sh lends its virtual display; a scenario run alone makes its own,
# never using the screen of the person who runs it.
if [ -n "${E2E_SHARED_DISPLAY:-}" ]; then
  export DISPLAY="$E2E_SHARED_DISPLAY" VELDOR_HEADLESS=0
else
  export VELDOR_HEADLESS=1
fi
# shellcheck source=../../scripts/wine-env.sh
source "$E2E_ROOT_DIR/scripts/wine-env.sh"
INI="$WINEPREFIX/drive_c/ProgramData/TREVAN/VELDOR/VELDOR.ini"
SIM_LOG="$ART/sim.log"
SENT="$ART/sent.txt"
STATUS_LOG="$ART/status.log"
STATUS_LINES="$ART/status_lines.log"
SIM_PID=""
WATCH_PID=""
START_PID=""
DESKTOP_PID=""
E2E_FAILED=0
E2E_T0=$SECONDS

e2e_cleanup() {
  local rc=$?
  if [ "$rc" -ne 0 ] || [ "$E2E_FAILED" -ne 0 ]; then
    e2e_shot at_failure
    e2e_probe state >"$ART/state_at_failure.txt" 2>&1 || true
  fi
  if [ -n "$WATCH_PID" ]; then kill "$WATCH_PID" 2>/dev/null || true; fi
  if [ -n "$SIM_PID" ]; then kill "$SIM_PID" 2>/dev/null || true; fi
  if [ -n "$START_PID" ]; then kill "$START_PID" 2>/dev/null || true; fi
  if [ -n "$DESKTOP_PID" ]; then kill "$DESKTOP_PID" 2>/dev/null || true; fi
  if [ -f "$INI" ]; then cp "$INI" "$ART/VELDOR.ini"; fi
  # Ends every Windows process of the prefix: the program, the desktop, the probe.
  veldor_wine_cleanup
  wineserver -w >/dev/null 2>&1 || true
  if [ -n "$SIM_PID" ]; then wait "$SIM_PID" 2>/dev/null || true; fi
  echo "scenario $E2E_SCENARIO: $([ "$rc" -eq 0 ] && echo passed || echo FAILED)" \
    "in $((SECONDS - E2E_T0)) s; artefacts in $ART"
}
trap e2e_cleanup EXIT

e2e_fail() {
  E2E_FAILED=1
  echo "FAIL [$E2E_SCENARIO]: $*"
  exit 1
}
e2e_pass() { echo "ok [$E2E_SCENARIO]: $*"; }
e2e_shot() { import -window root "$ART/$1.png" 2>/dev/null || true; }

# The probe on the program's desktop; its output on stdout.
e2e_probe() { wine "$PROBE" -d "$DESKTOP" "$@" 2>/dev/null; }

# Waits until every condition holds (see veldor_probe.cpp), at most the
# given seconds (-t, default 30). The probe's last view of the program is in
# $ART/last_probe.txt. Returns 1 when the time ran out; a program that does
# not answer fails the scenario at once.
e2e_wait() {
  local rc=0
  e2e_probe wait "$@" >"$ART/last_probe.txt" || rc=$?
  case $rc in
    0) return 0 ;;
    3) e2e_fail "the program does not answer: $(grep -v '^control=' "$ART/last_probe.txt" | tr '\n' ' ')" ;;
    4) e2e_fail "bad probe condition: $*" ;;
    *) return 1 ;;
  esac
}
# e2e_expect MESSAGE CONDITION...: waits, and fails with MESSAGE on a timeout.
e2e_expect() {
  local message="$1"
  shift
  e2e_wait "$@" || e2e_fail "$message; the program showed: $(grep -v '^control=' "$ART/last_probe.txt" | tr '\n' ' ')"
}
# The value of one "key=value" line of the probe's last answer.
e2e_last() { awk -v k="$1=" 'index($0, k) == 1 { print substr($0, length(k) + 1); exit }' "$ART/last_probe.txt"; }

# Makes sure that COM1, COM3 and COM4 of the prefix lead where the
# scenarios expect. Changing the registry needs a new wineserver session.
e2e_port_target() {
  (wine reg query 'HKLM\Software\Wine\Ports' /v "$1" 2>/dev/null || true) | tr -d '\r' |
    awk -v k="$1" '$1 == k {print $3}'
}
e2e_link_ports() {
  if [ "$(e2e_port_target COM1)" != "$COM1_LINK" ] || [ "$(e2e_port_target COM3)" != "$COM3_PATH" ] ||
     [ "$(e2e_port_target COM4)" != "$COM4_PATH" ]; then
    wine reg add 'HKLM\Software\Wine\Ports' /v COM1 /t REG_SZ /d "$COM1_LINK" /f >/dev/null 2>&1
    wine reg add 'HKLM\Software\Wine\Ports' /v COM3 /t REG_SZ /d "$COM3_PATH" /f >/dev/null 2>&1
    wine reg add 'HKLM\Software\Wine\Ports' /v COM4 /t REG_SZ /d "$COM4_PATH" /f >/dev/null 2>&1
    wineserver -k >/dev/null 2>&1 || true
    wineserver -w >/dev/null 2>&1 || true
    wineserver -p >/dev/null 2>&1 || true
    wine cmd /c exit </dev/null >/dev/null 2>&1 || true
  fi
}

# A fresh start: no settings file, and the default calibration beside the
# program.
e2e_fresh_settings() {
  rm -f "$INI"
  cp "$E2E_ROOT_DIR/tests/data/cal/default_curve.cal" "$BUILD_ROOT/Default.cal"
}
# e2e_setting SECTION KEY VALUE: writes one key of the settings file before
# the program starts, as the private-profile calls would (sections and keys
# without regard to case, other keys untouched). e2e_settings does the same
# for lines "SECTION|KEY|VALUE" on its input.
e2e_setting() { printf '%s|%s|%s\n' "$1" "$2" "$3" | e2e_settings; }
e2e_settings() {
  mkdir -p "$(dirname "$INI")"
  python3 -c '
import sys
path = sys.argv[1]
try:
    lines = open(path, encoding="latin-1").read().splitlines()
except FileNotFoundError:
    lines = []
for entry in sys.stdin.read().splitlines():
    if not entry.strip():
        continue
    section, key, value = entry.split("|", 2)
    out, inside, done, seen = [], False, False, False
    for line in lines:
        stripped = line.strip()
        if stripped.startswith("["):
            if inside and not done:
                out.append(f"{key}={value}")
                done = True
            inside = stripped[1:-1].lower() == section.lower()
            seen = seen or inside
        elif inside and stripped.split("=", 1)[0].strip().lower() == key.lower():
            if not done:
                out.append(f"{key}={value}")
                done = True
            continue
        out.append(line)
    if not done:
        if not seen:
            out.append(f"[{section}]")
        out.append(f"{key}={value}")
    lines = out
open(path, "w", encoding="latin-1", newline="\r\n").write("\n".join(lines) + "\n")
' "$INI"
}
# e2e_ini_value SECTION KEY: prints the value of a key of the settings file.
e2e_ini_value() {
  tr -d '\r' <"$INI" | awk -v s="[$1]" -v k="$2" '
    /^\[/ { inside = (tolower($0) == tolower(s)); next }
    inside { i = index($0, "="); if (i > 0 && tolower(substr($0, 1, i - 1)) == tolower(k)) { print substr($0, i + 1); exit } }'
}

# e2e_start_sim [OPTIONS]: the simulator on a new pty, linked as COM1.
e2e_start_sim() {
  rm -f "$COM1_LINK"
  "$SIM" --link "$COM1_LINK" --log "$SIM_LOG" --record-file "$SENT" "$@" >"$ART/sim.out" 2>&1 &
  SIM_PID=$!
  local deadline=$((SECONDS + 10))
  until [ -e "$COM1_LINK" ]; do
    kill -0 "$SIM_PID" 2>/dev/null || e2e_fail "the simulator ended: $(head -1 "$ART/sim.out")"
    [ $SECONDS -lt $deadline ] || e2e_fail "the simulator made no pty"
    sleep 0.05
  done
}

# Opens the Wine desktop on which the program runs, and the watcher: it
# places status_hook.dll in the programs of the desktop, so that every status
# text and caption the program sets is appended to $STATUS_LINES, and it
# records in $STATUS_LOG what the program shows at each of its looks (every
# 50 ms), "HUNG" when the frame does not answer within 5 seconds.
e2e_start_desktop() {
  wine explorer "/desktop=$DESKTOP,1024x768" >>"$ART/wine.log" 2>&1 &
  DESKTOP_PID=$!
  local deadline=$((SECONDS + 30)) starts=0
  until grep -q '^0 hooked$' "$STATUS_LOG" 2>/dev/null; do
    # A watcher started while the desktop is still coming up may end at
    # once without a word; it is started again, once.
    if [ -z "$WATCH_PID" ] || ! kill -0 "$WATCH_PID" 2>/dev/null; then
      [ $starts -lt 2 ] && [ ! -s "$STATUS_LOG" ] || e2e_fail "the watcher ended: $(cat "$STATUS_LOG")"
      starts=$((starts + 1))
      [ $starts -eq 1 ] || sleep 1
      wine "$PROBE" -d "$DESKTOP" watch -t 900 -k "$(e2e_winpath "$HOOK_DLL")" "$(e2e_winpath "$STATUS_LINES")" \
        >>"$STATUS_LOG" 2>&1 &
      WATCH_PID=$!
    fi
    [ $SECONDS -lt $deadline ] || e2e_fail "the watcher did not place its hook"
    sleep 0.1
  done
}

# Starts veldor.exe (or the exe given) on the desktop and waits for its frame.
e2e_start_program() {
  local exe="${1:-$EXE}"
  [ -n "$WATCH_PID" ] || e2e_start_desktop
  wine explorer "/desktop=$DESKTOP,1024x768" "$exe" >>"$ART/wine.log" 2>&1 &
  START_PID=$!
  e2e_expect "no frame window appeared" -t 60 frames=1
}

# Gets the sign-on box out of the way: a click closes it, as the operator
# may do, rather than waiting for it to close by itself; then the frame
# takes input again.
e2e_close_signon() {
  if e2e_wait -t 5 window=; then xdotool mousemove 512 384 click 1; fi
  e2e_expect "the sign-on box did not close" -t 20 nowindow= enabled=1
}

# Gives the Wine desktop the keyboard.
e2e_focus() {
  local win
  win="$(xdotool search --name "$DESKTOP - Wine desktop" | sed -n 1p)"
  [ -n "$win" ] || e2e_fail "no Wine desktop window"
  xdotool windowfocus --sync "$win"
}
e2e_key() { xdotool key --delay 80 "$@"; }
# Types text into the control that has the focus.
e2e_type() { xdotool type --delay 20 "$1"; }

# The Windows form of a path here.
e2e_winpath() { winepath -w "$1" 2>/dev/null; }

# Waits up to $2 seconds for a line of the simulator's log matching $1.
e2e_wait_log() {
  local deadline=$((SECONDS + $2))
  until grep -q -- "$1" "$SIM_LOG" 2>/dev/null; do
    [ $SECONDS -lt $deadline ] || return 1
    sleep 0.1
  done
}
# The bodies received from the program, in order, one a line.
e2e_received() { sed -n 's/^[0-9]* RX \(.*\)$/\1/p' "$SIM_LOG"; }
# The bodies received after the first N, without "KA" and "NA".
e2e_received_after() { e2e_received | tail -n +$(($1 + 1)) | grep -v -x -e KA -e NA || true; }
# Waits until at least COUNT bodies came after the first N: e2e_wait_received N COUNT SECONDS.
e2e_wait_received() {
  local deadline=$((SECONDS + $3))
  until [ "$(e2e_received_after "$1" | wc -l)" -ge "$2" ]; do
    [ $SECONDS -lt $deadline ] || return 1
    sleep 0.1
  done
}
# How many samples the simulator has sent.
e2e_samples_sent() { grep -c '^[0-9]* TX RA ' "$SIM_LOG" 2>/dev/null || true; }
# Waits until the simulator has sent N more samples than now, at most S s.
e2e_wait_samples() {
  local target=$(($(e2e_samples_sent) + $1)) deadline=$((SECONDS + $2))
  until [ "$(e2e_samples_sent)" -ge "$target" ]; do
    [ $SECONDS -lt $deadline ] || return 1
    sleep 0.2
  done
}

# A status text set in pane 0 (or "pane1=..." etc. as given) since the last
# e2e_mark (or since the desktop opened); fixed string.
E2E_MARK=0
e2e_mark() { E2E_MARK=$(wc -l <"$STATUS_LINES"); }
e2e_status_seen() {
  local line="$1"
  [[ "$line" =~ ^(pane[0-2]|caption)= ]] || line="pane0=$line"
  [ -f "$STATUS_LINES" ] &&
    awk -v l="$line" -v from="$E2E_MARK" 'NR > from { sub(/^[0-9]+ /, ""); if ($0 == l) { found = 1; exit } }
      END { exit !found }' "$STATUS_LINES"
}
# Waits up to $2 seconds for a status text to be set.
e2e_wait_status() {
  local deadline=$((SECONDS + $2))
  until e2e_status_seen "$1"; do
    [ $SECONDS -lt $deadline ] || return 1
    grep -q ' HUNG$' "$STATUS_LOG" && e2e_fail "the program stopped answering"
    sleep 0.1
  done
}
# The texts set in pane 0, in order, one a line.
e2e_status_lines() { sed -n 's/^[0-9]* pane0=//p' "$STATUS_LINES" 2>/dev/null; }

e2e_program_running() { pgrep -f "^$1" >/dev/null 2>&1; }
# Waits until the program has ended: no frame and no process.
e2e_wait_exit() {
  local exe="${2:-$EXE}" deadline=$((SECONDS + $1))
  while e2e_program_running "$exe"; do
    [ $SECONDS -lt $deadline ] || e2e_fail "the program is still running"
    sleep 0.2
  done
}

# The watcher never saw the program stop answering.
e2e_check_answering() {
  if grep -q ' HUNG$' "$STATUS_LOG"; then e2e_fail "the program stopped answering at some point"; fi
}

# The layout of the scenarios that look at the views: the frame maximised,
# the Listing top left with the Chart under it, the Plot on the right; the
# Tags window shown with 1.
e2e_view_layout() {
  e2e_settings <<EOF
Main window|Maximised|1
Main window|Show tags|${1:-0}
Listing|Origin X|0
Listing|Origin Y|0
Listing|Width|560
Listing|Height|400
Chart|Origin X|0
Chart|Origin Y|400
Chart|Width|560
Chart|Height|260
Plot|Origin X|560
Plot|Origin Y|0
Plot|Width|460
Plot|Height|660
EOF
}
# e2e_open_survey FILE: File > Open through the file dialog, then waits for
# the title to name it.
e2e_open_survey() {
  e2e_key ctrl+o
  e2e_expect "no file dialog \"Open Data File\"" -t 15 window="Open Data File"
  e2e_type "$(e2e_winpath "$1")"
  e2e_key Return
  e2e_expect "$(basename "$1") is not shown loaded" -t 20 nowindow="Open Data File" \
    "caption=VELDOR [ $(basename "$1") ]"
}
# e2e_view_shot NAME: a screenshot once the windows have painted, with the
# probe's view of the window places beside it (NAME.probe).
e2e_view_shot() {
  sleep 1
  e2e_wait -t 5 enabled=1 || true
  e2e_shot "$1"
  cp "$ART/last_probe.txt" "$ART/$1.probe"
}
# e2e_client_point CLASS X Y: the screen point of a client point of a child
# window, from the probe's last look.
e2e_client_point() {
  local origin
  origin="$(sed -n "s/^client=$1|\([0-9-]*\),\([0-9-]*\),.*/\1 \2/p" "$ART/last_probe.txt")"
  [ -n "$origin" ] || e2e_fail "no $1 window"
  set -- $origin "$2" "$3"
  echo "$(($1 + $3)) $(($2 + $4))"
}
# e2e_close_box MESSAGE: Return on the message box "VELDOR" in front, pressed
# again only while the box is still there (a box that another thread opened
# may take the keyboard a moment after it shows); fails with MESSAGE.
e2e_close_box() {
  local try
  for try in 1 2 3; do
    e2e_key Return
    if e2e_wait -t 3 nowindow=VELDOR; then return 0; fi
  done
  e2e_fail "$1"
}
# e2e_click CLASS X Y [BUTTON]
e2e_click() { xdotool mousemove $(e2e_client_point "$1" "$2" "$3") click "${4:-1}"; }

# ---- The dialog scenarios' steps ------------------------------------------------------------
# e2e_check LOG SCRIPT ARGS...: a checker that prints one line a fact, "ok"
# or "WRONG", with the modules beside this file importable; its output goes
# to $ART/LOG and its first wrong fact fails the scenario.
e2e_check() {
  local log="$ART/$1"
  shift
  PYTHONPATH="$E2E_ROOT_DIR/tests/e2e:$E2E_ROOT_DIR/tests" python3 "$@" >>"$log" 2>&1 ||
    { tail -3 "$log"; e2e_fail "$(basename "$1") ${2:-}: $(tail -1 "$log")"; }
}
# e2e_open_dialog MENU KEYS TITLE STATUS [CONDITION...]: MENU opens a menu
# (none with ""), KEYS choose the command, and the dialog TITLE opens with
# the status line STATUS (and the conditions hold).
e2e_open_dialog() {
  e2e_mark
  if [ -n "$1" ]; then
    e2e_key "$1"
    e2e_expect "the menu of $1 did not open" -t 5 window=
  fi
  e2e_key $2
  e2e_expect "no dialog \"$3\"" -t 10 "window=$3" "${@:5}"
  e2e_wait_status "$4" 5 || e2e_fail "no status line \"$4\""
}
# e2e_expect_ini SECTION KEY=VALUE...: the settings file holds these values now.
e2e_expect_ini() {
  local section="$1" pair got
  shift
  for pair in "$@"; do
    got="$(e2e_ini_value "$section" "${pair%%=*}")"
    [ "$got" = "${pair#*=}" ] || e2e_fail "[$section] ${pair%%=*} is \"$got\", not \"${pair#*=}\""
  done
}
# A fingerprint of the settings file, to compare after a dialog that must not write.
e2e_ini_sum() { if [ -f "$INI" ]; then md5sum <"$INI"; else echo none; fi; }
# e2e_control_text CLASS ID: a control's text in the probe's last look.
e2e_control_text() { sed -n "s/^control=$1|$2|//p" "$ART/last_probe.txt" | head -1; }
# e2e_has_labels WHAT LABEL...: the probe's last look shows a control of each text.
e2e_has_labels() {
  local what="$1" label
  shift
  for label in "$@"; do
    grep -qF "|$label" "$ART/last_probe.txt" || e2e_fail "$what has no \"$label\""
  done
}
# e2e_save_as PATH: File > Save As into PATH; the caption names it.
e2e_save_as() {
  e2e_key alt+f
  e2e_expect "the File menu did not open" -t 5 window=
  e2e_key a
  e2e_expect "no file dialog \"Save Data File...\"" -t 15 window="Save Data File..."
  e2e_type "$(e2e_winpath "$1")"
  e2e_key Return
  e2e_expect "$(basename "$1") is not saved" -t 20 nowindow="Save Data File..." "caption=VELDOR [ $(basename "$1") ]"
}
# e2e_start_linked [OPTIONS]: the simulator with OPTIONS on COM1, the
# program started, its "OP 1" received and the sign-on box closed.
e2e_start_linked() {
  e2e_start_sim "$@"
  e2e_start_program
  e2e_wait_log "RX OP 1" 30 || e2e_fail "no OP 1 from the program"
  e2e_close_signon
  e2e_focus
}
# e2e_start_on_survey DAT: the program started and the survey DAT opened
# through File > Open.
e2e_start_on_survey() {
  e2e_start_program
  e2e_close_signon
  e2e_focus
  e2e_open_survey "$1"
}
# e2e_quit [ANSWER]: File > Exit, a question then answered with ANSWER when
# given; the program ends, and it never stopped answering.
e2e_quit() {
  e2e_key alt+f
  e2e_expect "the File menu did not open" -t 5 window=
  e2e_key x
  if [ -n "${1:-}" ] && e2e_wait -t 3 window=VELDOR; then e2e_key "$1"; fi
  e2e_wait_exit 15
  e2e_check_answering
}

e2e_link_ports
