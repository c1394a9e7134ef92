# shellcheck shell=bash
# Sourced first by each scenario_NAME.sh [WINDOWS_BUILD_DIR] [NATIVE_BUILD_DIR], which then
# drives veldor.exe under Wine with the controller simulator linked as COM1. Artefacts stay in
# <Windows build>/e2e/<scenario>/. Each scenario ends its own wineserver session, so no
# program outlives it.

set -euo pipefail
E2E_SCENARIO="${E2E_SCENARIO:-$(basename "$0" .sh | sed 's/^scenario_//')}"
E2E_ROOT_DIR="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
BUILD_ROOT="$(cd "${1:-$E2E_ROOT_DIR/build/win32}" && pwd)"
E2E_NATIVE="$(cd "${2:-$E2E_ROOT_DIR/build/native}" && pwd)"
SIM="$E2E_NATIVE/tools/controller-sim/controller-sim"
EXE="$BUILD_ROOT/veldor.exe"
PROBE="$BUILD_ROOT/tests/e2e/veldor_probe.exe"
HOOK_DLL="$BUILD_ROOT/tests/e2e/status_hook.dll"
CHECK_DAT="$E2E_ROOT_DIR/tests/e2e/check_dat.py"
VIEWS_PY="$E2E_ROOT_DIR/tests/e2e/views_survey.py"
VIEWS="python3 $VIEWS_PY"
E2E_DIR="$BUILD_ROOT/e2e"
ART="$E2E_DIR/$E2E_SCENARIO"
DAT="$ART/$E2E_SCENARIO.DAT"
# COM1 of the prefix leads to this link, which each simulator remakes to its own pseudo-terminal;
# COM3 leads to a path where no device will ever be, COM4 to a device that is no serial line.
COM1_LINK="$E2E_DIR/com1"
COM3_PATH="$E2E_DIR/no-such-device"
COM4_PATH=/dev/null
DESKTOP=VELDOR

for file in "$SIM" "$EXE" "$PROBE" "$HOOK_DLL"; do
  [ -f "$file" ] || { echo "no $file"; exit 2; }
done
rm -rf "$ART"
mkdir -p "$ART"
exec > >(tee "$ART/scenario.log") 2>&1

export BUILD_ROOT
# A scenario run alone makes its own display, never the user's screen.
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
SIM_PID="" WATCH_PID="" START_PID="" DESKTOP_PID=""
E2E_T0=$SECONDS

e2e_cleanup() {
  local rc=$?
  if [ "$rc" -eq 0 ] && grep -q ' HUNG$' "$STATUS_LOG" 2>/dev/null; then
    echo "FAIL [$E2E_SCENARIO]: the program stopped answering at some point"
    rc=1
  fi
  if [ "$rc" -ne 0 ]; then
    e2e_shot at_failure
    e2e_probe wait -t 0 >"$ART/state_at_failure.txt" 2>&1 || true
  fi
  # shellcheck disable=SC2086
  kill $WATCH_PID $SIM_PID $START_PID $DESKTOP_PID 2>/dev/null || true
  if [ -f "$INI" ]; then cp "$INI" "$ART/VELDOR.ini"; fi
  veldor_wine_cleanup
  wineserver -w >/dev/null 2>&1 || true
  if [ -n "$SIM_PID" ]; then wait "$SIM_PID" 2>/dev/null || true; fi
  echo "scenario $E2E_SCENARIO: $([ "$rc" -eq 0 ] && echo passed || echo FAILED)" \
    "in $((SECONDS - E2E_T0)) s; artefacts in $ART"
  exit "$rc"
}
trap e2e_cleanup EXIT

e2e_fail() {
  echo "FAIL [$E2E_SCENARIO]: $*"
  exit 1
}
e2e_pass() { echo "ok [$E2E_SCENARIO]: $*"; }
# e2e_same WHAT GOT WANT: GOT is WANT, or the scenario fails saying what it got.
e2e_same() { [ "$2" = "$3" ] || e2e_fail "$1: \"$2\", not \"$3\""; }

# e2e_until SECONDS CONDITION: the shell text CONDITION holds within SECONDS.
e2e_until() {
  local deadline=$((SECONDS + $1))
  until eval "$2"; do
    [ $SECONDS -lt $deadline ] || return 1
    sleep 0.1
  done
}

e2e_probe() { wine "$PROBE" -d "$DESKTOP" "$@" 2>/dev/null; }

# e2e_wait [-t SECONDS] CONDITION... (see veldor_probe.cpp): 1 when the time
# ran out; a program that does not answer fails the scenario. The probe's
# last look is in $ART/last_probe.txt.
e2e_wait() {
  local rc=0
  e2e_probe wait "$@" >"$ART/last_probe.txt" || rc=$?
  [ "$rc" != 3 ] || e2e_fail "the program does not answer: $(grep -v '^control=' "$ART/last_probe.txt" | tr '\n' ' ')"
  [ "$rc" != 4 ] || e2e_fail "bad probe condition: $*"
  [ "$rc" = 0 ]
}
# e2e_expect MESSAGE CONDITION...: e2e_wait, failing with MESSAGE.
e2e_expect() {
  e2e_wait "${@:2}" || e2e_fail "$1; the program showed: $(grep -v '^control=' "$ART/last_probe.txt" | tr '\n' ' ')"
}

# COM1, COM3 and COM4 of the prefix; a registry change needs a new wineserver.
e2e_link_ports() {
  local port
  local -A target=([COM1]="$COM1_LINK" [COM3]="$COM3_PATH" [COM4]="$COM4_PATH")
  if [ "$( (wine reg query 'HKLM\Software\Wine\Ports' 2>/dev/null || true) | tr -d '\r' |
           awk '$1 ~ /^COM[134]$/ { print $1, $3 }' | sort | tr '\n' ' ')" != \
       "COM1 $COM1_LINK COM3 $COM3_PATH COM4 $COM4_PATH " ]; then
    for port in COM1 COM3 COM4; do
      wine reg add 'HKLM\Software\Wine\Ports' /v "$port" /t REG_SZ /d "${target[$port]}" /f >/dev/null 2>&1
    done
    wineserver -k >/dev/null 2>&1 || true
    wineserver -w >/dev/null 2>&1 || true
    wineserver -p >/dev/null 2>&1 || true
    wine cmd /c exit </dev/null >/dev/null 2>&1 || true
  fi
}

e2e_fresh_settings() {
  rm -f "$INI"
  cp "$E2E_ROOT_DIR/tests/data/cal/default_curve.cal" "$BUILD_ROOT/Default.cal"
}
# e2e_setting SECTION KEY VALUE...: keys of the settings file written before
# the start; e2e_settings: the lines "SECTION|KEY=VALUE|KEY=VALUE..." of its input.
e2e_setting() { printf '%s|%s=%s\n' "$@" | e2e_settings; }
e2e_settings() {
  mkdir -p "$(dirname "$INI")"
  python3 -c '
import configparser, sys
ini = configparser.RawConfigParser(delimiters=("=",), strict=False, interpolation=None)
ini.optionxform = str
ini.read(sys.argv[1], encoding="latin-1")
for section, *pairs in (line.split("|") for line in sys.stdin.read().split("\n") if line.strip()):
    ini.has_section(section) or ini.add_section(section)
    for key, value in (pair.split("=", 1) for pair in pairs):
        ini.set(section, key, value)
with open(sys.argv[1], "w", encoding="latin-1", newline="\r\n") as out:
    ini.write(out, space_around_delimiters=False)
' "$INI"
}
e2e_ini_value() {
  tr -d '\r' <"$INI" | awk -v s="[$1]" -v k="$2" '
    /^\[/ { inside = (tolower($0) == tolower(s)); next }
    inside { i = index($0, "="); if (i > 0 && tolower(substr($0, 1, i - 1)) == tolower(k)) { print substr($0, i + 1); exit } }'
}

e2e_start_sim() {
  rm -f "$COM1_LINK"
  "$SIM" --link "$COM1_LINK" --log "$SIM_LOG" --record-file "$SENT" "$@" >"$ART/sim.out" 2>&1 &
  SIM_PID=$!
  e2e_until 10 '[ -e "$COM1_LINK" ] || ! kill -0 "$SIM_PID" 2>/dev/null' || e2e_fail "the simulator made no pty"
  [ -e "$COM1_LINK" ] || e2e_fail "the simulator ended: $(head -1 "$ART/sim.out")"
}

# The Wine desktop, and the watcher: its hook appends every status text and
# caption the program sets to $STATUS_LINES; "HUNG" in $STATUS_LOG says the
# frame did not answer within 5 seconds.
e2e_start_desktop() {
  local try
  wine explorer "/desktop=$DESKTOP,1024x768" >>"$ART/wine.log" 2>&1 &
  DESKTOP_PID=$!
  # A watcher started while the desktop is still coming up may end at once
  # without a word; it is started again, once.
  for try in 1 2; do
    [ "$try" = 1 ] || sleep 1
    wine "$PROBE" -d "$DESKTOP" watch 900 "$(e2e_winpath "$HOOK_DLL")" "$(e2e_winpath "$STATUS_LINES")" \
      >>"$STATUS_LOG" 2>&1 &
    WATCH_PID=$!
    e2e_until 30 'grep -q "^0 hooked$" "$STATUS_LOG" 2>/dev/null || ! kill -0 "$WATCH_PID" 2>/dev/null' ||
      e2e_fail "the watcher did not place its hook"
    ! grep -q '^0 hooked$' "$STATUS_LOG" || return 0
    [ ! -s "$STATUS_LOG" ] || break
  done
  e2e_fail "the watcher ended: $(cat "$STATUS_LOG")"
}

e2e_start_program() {
  local exe="${1:-$EXE}"
  [ -n "$WATCH_PID" ] || e2e_start_desktop
  wine explorer "/desktop=$DESKTOP,1024x768" "$exe" >>"$ART/wine.log" 2>&1 &
  START_PID=$!
  e2e_expect "no frame window appeared" -t 60 frames=1
}

# A click closes the sign-on box, as the operator may do.
e2e_close_signon() {
  if e2e_wait -t 5 window=; then xdotool mousemove 512 384 click 1; fi
  e2e_expect "the sign-on box did not close" -t 20 nowindow= enabled=1
}

e2e_focus() {
  local win
  win="$(xdotool search --name "$DESKTOP - Wine desktop" | sed -n 1p)"
  [ -n "$win" ] || e2e_fail "no Wine desktop window"
  xdotool windowfocus --sync "$win"
}
e2e_key() { xdotool key --delay 80 "$@"; }
e2e_type() { xdotool type --delay 20 -- "$1"; }
# e2e_keys TOKEN...: keys, and ":TEXT" tokens typed as text, in order.
e2e_keys() {
  local keys=() token
  for token in "$@" :; do
    if [ "${token:0:1}" != : ]; then
      keys+=("$token")
      continue
    fi
    [ ${#keys[@]} -eq 0 ] || e2e_key "${keys[@]}"
    keys=()
    [ -z "${token:1}" ] || e2e_type "${token:1}"
  done
}
# e2e_menu KEY LETTER...: KEY opens a menu, the letters choose in it.
e2e_menu() {
  e2e_key "$1"
  e2e_expect "the menu of $1 did not open" -t 5 window=
  [ $# -lt 2 ] || e2e_key "${@:2}"
}

e2e_winpath() { winepath -w "$1" 2>/dev/null; }

# e2e_wait_log PATTERN SECONDS: a line of the simulator's log matches.
e2e_wait_log() { e2e_until "$2" "grep -q -- $(printf %q "$1") \"\$SIM_LOG\" 2>/dev/null"; }
# The bodies received from the program, one a line.
e2e_received() { sed -n 's/^[0-9]* RX \(.*\)$/\1/p' "$SIM_LOG"; }
# The bodies received after the first N, without "KA" and "NA".
e2e_received_after() { e2e_received | tail -n +$(($1 + 1)) | grep -v -x -e KA -e NA || true; }
e2e_wire_mark() { E2E_WIRE=$(e2e_received | wc -l); }
# e2e_expect_wire [-p] WHAT BODY...: exactly these bodies (with -p: these
# first) went out since e2e_wire_mark; none at all when none are given.
e2e_expect_wire() {
  local first=0 count want got
  if [ "$1" = -p ]; then
    first=1
    shift
  fi
  count=$(($# - 1))
  want="$(printf '%s\n' "${@:2}" | sed '/^$/d')"
  e2e_until 10 '[ "$(e2e_received_after "$E2E_WIRE" | wc -l)" -ge "$count" ]' || true
  sleep 0.5
  got="$(e2e_received_after "$E2E_WIRE")"
  [ "$first" = 0 ] || got="$(head -n "$count" <<<"$got")"
  [ "$got" = "$want" ] || e2e_fail "$1: sent [$(echo "$got" | tr '\n' ' ')], not [${*:2}]"
}
e2e_samples_sent() { grep -c '^[0-9]* TX RA ' "$SIM_LOG" 2>/dev/null || true; }
# e2e_wait_samples N SECONDS: N more samples sent.
e2e_wait_samples() {
  local target=$(($(e2e_samples_sent) + $1))
  e2e_until "$2" '[ "$(e2e_samples_sent)" -ge "$target" ]'
}

# e2e_status_seen TEXT: TEXT set in pane 0 since e2e_mark.
E2E_MARK=0
e2e_mark() { E2E_MARK=$( (wc -l <"$STATUS_LINES") 2>/dev/null || echo 0); }
e2e_status_seen() {
  [ -f "$STATUS_LINES" ] &&
    awk -v l="pane0=$1" -v from="$E2E_MARK" 'NR > from { sub(/^[0-9]+ /, ""); if ($0 == l) { found = 1; exit } }
      END { exit !found }' "$STATUS_LINES"
}
# e2e_expect_status TEXT [SECONDS]: fails when TEXT is not set within SECONDS (5).
e2e_expect_status() {
  local text="$1"
  e2e_until "${2:-5}" '! grep -q " HUNG$" "$STATUS_LOG" || e2e_fail "the program stopped answering"; e2e_status_seen "$text"' ||
    e2e_fail "no status line \"$1\""
}
e2e_status_lines() { sed -n 's/^[0-9]* pane0=//p' "$STATUS_LINES" 2>/dev/null; }

e2e_wait_exit() {
  local exe="${2:-$EXE}"
  e2e_until "$1" '! pgrep -f "^$exe" >/dev/null 2>&1' || e2e_fail "the program is still running"
}

# The views' layout: the frame maximised, the Listing top left over the
# Chart, the Plot on the right; the Tags window shown with 1.
e2e_view_layout() {
  e2e_settings <<EOF
Main window|Maximised=1|Show tags=${1:-0}
Listing|Origin X=0|Origin Y=0|Width=560|Height=400
Chart|Origin X=0|Origin Y=400|Width=560|Height=260
Plot|Origin X=560|Origin Y=0|Width=460|Height=660
EOF
}
# e2e_file_dialog KEYS TITLE STATUS PATH DONE: KEYS open the file dialog
# TITLE, which sets the status STATUS; PATH is taken, and the title and the
# status "Data DONE file 'NAME'" name it.
e2e_file_dialog() {
  e2e_mark
  e2e_keys $1
  e2e_expect "no file dialog \"$2\"" -t 15 "window=$2"
  e2e_expect_status "$3" 5
  e2e_keys ":$(e2e_winpath "$4")" Return
  e2e_expect "$(basename "$4") is not shown" -t 20 nowindow="$2" "caption=VELDOR [ $(basename "$4") ]"
  e2e_expect_status "Data $5 file '$(basename "$4")'" 10
}
e2e_open_survey() { e2e_file_dialog ctrl+o "Open Data File" "Select data file to open..." "$1" "read from"; }
e2e_save_as() { e2e_file_dialog "alt+f a" "Save Data File..." "Select filename for data file..." "$1" "written to"; }
# e2e_shot NAME [PAUSE]: a screenshot.
e2e_shot() {
  [ -z "${2:-}" ] || sleep "$2"
  import -window root "$ART/$1.png" 2>/dev/null || true
}
# e2e_view_shot NAME: a screenshot once painted, with the probe's look (NAME.probe).
e2e_view_shot() {
  sleep 1
  e2e_wait -t 5 enabled=1 || true
  e2e_shot "$1"
  cp "$ART/last_probe.txt" "$ART/$1.probe"
}
# e2e_click CLASS X Y [BUTTON]: a click on a client point of a child window.
e2e_click() {
  local origin
  origin="$(sed -n "s/^client=$1|\([0-9-]*\),\([0-9-]*\),.*/\1 \2/p" "$ART/last_probe.txt")"
  [ -n "$origin" ] || e2e_fail "no $1 window"
  xdotool mousemove $((${origin% *} + $2)) $((${origin#* } + $3)) click "${4:-1}"
}

# e2e_says TEXT: a static control says TEXT (escaped as the probe does; "TEXT*": begins so).
e2e_says() {
  E2E_TEXT="$1" awk -F'|' '$1 == "control=Static" {
      t = substr($0, length($1) + length($2) + 3); w = ENVIRON["E2E_TEXT"]
      if (t == w || (w ~ /\*$/ && index(t, substr(w, 1, length(w) - 1)) == 1)) found = 1 }
    END { exit !found }' "$ART/last_probe.txt"
}
# e2e_box TEXT [TITLE]: within 10 s a box "VELDOR" says TEXT (see e2e_says),
# over the dialog TITLE, which it disables, when given.
e2e_box() {
  local text="$1"
  e2e_until 10 'e2e_wait -t 1 window=VELDOR && e2e_says "$text"' ||
    e2e_fail "no box \"$1\"; shown: $(grep '^control=Static' "$ART/last_probe.txt" | tr '\n' ' ')"
  [ -z "${2:-}" ] || grep -q -F "window=#32770|$2|0|" "$ART/last_probe.txt" ||
    e2e_fail "the box \"$1\" is not owned by the dialog \"$2\""
}
# e2e_close_box MESSAGE: Return on the box "VELDOR"; a box another thread
# opened may not get the keyboard under Wine, so then its OK button is pressed.
e2e_close_box() {
  local try box
  e2e_key Return
  for try in 1 2 3; do
    if e2e_wait -t 3 nowindow=VELDOR; then return 0; fi
    box="$(sed -n 's/^window=#32770|VELDOR|1|//p' "$ART/last_probe.txt" | head -n 1)"
    [ -z "$box" ] || e2e_probe ok "$box" || true
  done
  e2e_fail "$1"
}
# e2e_refused TITLE TEXT: a box says TEXT, Return closes it, the dialog TITLE stays.
e2e_refused() {
  e2e_box "$2"
  e2e_close_box "the box \"$2\" did not close"
  e2e_expect "the dialog closed after \"$2\"" -t 10 nowindow=VELDOR "window=$1"
}
# e2e_check LOG SCRIPT ARGS...: a Python checker, its output in $ART/LOG; a
# wrong fact fails the scenario.
e2e_check() {
  local log="$ART/$1"
  shift
  PYTHONPATH="$E2E_ROOT_DIR/tests/e2e:$E2E_ROOT_DIR/tests" python3 "$@" >>"$log" 2>&1 ||
    { tail -3 "$log"; e2e_fail "$(basename "$1") ${2:-}: $(tail -1 "$log")"; }
}
# e2e_check_dat DAT ARGS...: DAT holds the samples sent from $since to $until_ (check_dat.py).
e2e_check_dat() {
  e2e_check check_dat.txt "$CHECK_DAT" "$1" --log "$SIM_LOG" --sent "$SENT" --interval 1 --since "$since" --until "$until_" "${@:2}"
  tail -1 "$ART/check_dat.txt"
}
# e2e_open_dialog MENU KEYS TITLE STATUS [CONDITION...]: MENU ("" none) and
# KEYS open the dialog TITLE with the status STATUS.
e2e_open_dialog() {
  e2e_mark
  if [ -n "$1" ]; then e2e_menu "$1" $2; else e2e_key $2; fi
  e2e_expect "no dialog \"$3\"" -t 10 "window=$3" "${@:5}"
  e2e_expect_status "$4" 5
}
# e2e_expect_ini SECTION KEY=VALUE...: the settings file holds these values now.
e2e_expect_ini() {
  local pair got
  for pair in "${@:2}"; do
    got="$(e2e_ini_value "$1" "${pair%%=*}")"
    [ "$got" = "${pair#*=}" ] || e2e_fail "[$1] ${pair%%=*} is \"$got\", not \"${pair#*=}\""
  done
}
# e2e_ini_mark, then e2e_ini_unchanged WHAT: the settings file's bytes did not change.
e2e_ini_mark() { E2E_INI_SUM="$(md5sum "$INI" 2>/dev/null || true)"; }
e2e_ini_unchanged() { [ "$(md5sum "$INI" 2>/dev/null || true)" = "$E2E_INI_SUM" ] || e2e_fail "$1 changed the settings file"; }
e2e_has_labels() {
  local label
  for label in "${@:2}"; do
    grep -qF "|$label" "$ART/last_probe.txt" || e2e_fail "$1 has no \"$label\""
  done
}

# e2e_split TEXT: the parts of TEXT between "; ", into the array E2E_PARTS.
e2e_split() { IFS=";" read -r -a E2E_PARTS <<<"${1//; /;}"; }
# e2e_step KEYS [EXPECT [SETTINGS [WIRE [SHOT]]]]: one row of a table of steps.
#   KEYS      the keys pressed (e2e_keys: ":TEXT" typed), split at spaces
#             ("\ " a space typed);
#   EXPECT    what holds within 15 s, "; " between: probe conditions
#             (window=TITLE, nowindow=TITLE, enabled=1...), status=TEXT (a
#             status line set since the row began), box=TEXT (a box says it,
#             see e2e_says), control=CLASS,ID,TEXT (a control shows TEXT);
#   SETTINGS  "[SECTION] KEY=VALUE; KEY=VALUE; [SECTION] ..." held by the
#             settings file; "unchanged": its bytes as at e2e_ini_mark;
#   WIRE      the bodies sent since e2e_wire_mark, "; " between; "none": none;
#   SHOT      a screenshot's name, taken half a second after EXPECT holds.
e2e_step() {
  local keys item conds=() check='e2e_wait -t 1 "${conds[@]}"' section=""
  read -a keys <<<"$1"
  e2e_mark
  e2e_keys "${keys[@]}"
  e2e_split "${2:-}"
  for item in "${E2E_PARTS[@]}"; do
    case "$item" in
      "") ;;
      status=*) check+=" && e2e_status_seen $(printf %q "${item#status=}")" ;;
      box=*) check+=" && e2e_says $(printf %q "${item#box=}")" ;;
      control=*) check+=" && grep -q -x -F $(printf %q "$(sed 's/,/|/; s/,/|/' <<<"$item")") \"\$ART/last_probe.txt\"" ;;
      *) conds+=("$item") ;;
    esac
  done
  e2e_until 15 "$check" ||
    e2e_fail "after \"$1\" not all of: $2; shown: $(grep -v '^client=' "$ART/last_probe.txt" | tr '\n' ' ')"
  [ -z "${5:-}" ] || e2e_shot "$5" 0.5
  if [ "${3:-}" = unchanged ]; then
    e2e_ini_unchanged "\"$1\""
  elif [ -n "${3:-}" ]; then
    e2e_split "$3"
    for item in "${E2E_PARTS[@]}"; do
      if [[ "$item" =~ ^\[([^]]*)\]\ *(.*)$ ]]; then
        section="${BASH_REMATCH[1]}"
        item="${BASH_REMATCH[2]}"
      fi
      [ -z "$item" ] || e2e_expect_ini "$section" "$item"
    done
  fi
  if [ -n "${4:-}" ]; then
    e2e_split "${4/#none/}"
    e2e_expect_wire "\"$1\"" "${E2E_PARTS[@]}"
  fi
}
# e2e_rows FUNCTION: FUNCTION called for each line "A | B | ..." of the
# input (blank lines and "#" lines left out), with the fields as arguments.
e2e_rows() {
  local rows row fields i
  mapfile -t rows
  for row in "${rows[@]}"; do
    [[ "$row" =~ ^[[:space:]]*(#|$) ]] && continue
    IFS='|' read -r -a fields <<<"$row"
    for i in "${!fields[@]}"; do read -r "fields[$i]" <<<"${fields[i]}"; done
    "$1" "${fields[@]}"
  done
}

# e2e_start_linked [SIM_OPTIONS]: the program started on the simulator, past the sign-on.
e2e_start_linked() {
  e2e_start_sim "$@"
  e2e_start_program
  e2e_wait_log "RX OP 1" 30 || e2e_fail "no OP 1 from the program"
  e2e_close_signon
  e2e_focus
}
# e2e_start_on_survey DAT [SHOW_TAGS]: the program started on the views' layout with DAT open.
e2e_start_on_survey() {
  e2e_view_layout "${2:-0}"
  e2e_start_program
  e2e_close_signon
  e2e_focus
  e2e_open_survey "$1"
}
# e2e_record F1|F2 [CONDITION...]: recording starts (F1) or stops (F2).
e2e_record() {
  local pane=Recording
  [ "$1" = F1 ] || pane=Idle
  e2e_key "$1"
  e2e_expect "$1 did not make it $pane" -t 10 "pane1=$pane" "${@:2}"
}
# e2e_quit [ANSWER [EXE]]: File > Exit; ANSWER to the question to save. The
# program ends, with "OP 0" when it had the port.
e2e_quit() {
  local op0
  op0=$(grep -c " RX OP 0$" "$SIM_LOG" 2>/dev/null || true)
  e2e_menu alt+f x
  if [ -n "${1:-}" ]; then
    e2e_box 'Current data has changed\nSave data ?'
    e2e_shot exit_question
    e2e_key "$1"
  fi
  e2e_wait_exit 15 "${2:-$EXE}"
  if grep -q " RX OP 1$" "$SIM_LOG" 2>/dev/null; then
    e2e_until 5 '[ "$(grep -c " RX OP 0$" "$SIM_LOG" || true)" -gt "$op0" ]' || e2e_fail "no OP 0 at exit"
  fi
}

e2e_link_ports
e2e_fresh_settings
