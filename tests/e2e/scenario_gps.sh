#!/usr/bin/env bash
# Configure > GPS with the simulator on COM1, which answers "OS" with
# "ET 8 0xC000":
#   - the dialog opens with the PC's date and the "GPS Set" keys' defaults;
#   - each refused Set shows its message in a box owned by the dialog, the
#     field keeps what was typed, nothing goes on the wire, and neither the
#     refusal nor closing the dialog with Escape changes the settings file;
#   - Set Time, Set Date, the latitude and longitude Sets, Initalise, Reset
#     and Self test (both answered Yes) put exactly "OT 19 5 60",
#     "OD 1 12 2021", "LT -45015500", "LG -3723250", "OI 1", "OI 2" and
#     "OS" on the wire, each with its status line; the Sets write their
#     fields back normalised and store the "GPS Set" keys;
#   - the self test's report, owned by the dialog, lists "Antenna short"
#     alone; reopened, the dialog shows the position and offset last set.
set -euo pipefail
E2E_SCENARIO=gps
# shellcheck source=lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

TITLE="VELDOR - Configure GPS"
# Control ids of the fields (src/dialogs/gps_ids.h).
declare -A ID=([hour]=1201 [minute]=1202 [second]=1203 [offset]=1204 [day]=1211 [month]=1212
  [year]=1213 [lat_deg]=1223 [lat_min]=1224 [lat_sec]=1225 [long_deg]=1233 [long_min]=1234
  [long_sec]=1235)
# The order of the tab stops, from "Hour", which has the focus when the
# dialog opens; a radio pair is one stop.
declare -A AT=([hour]=0 [minute]=1 [second]=2 [offset]=3 [set_time]=4 [day]=5 [month]=6
  [year]=7 [set_date]=8 [north]=9 [lat_deg]=10 [lat_min]=11 [lat_sec]=12 [set_lat]=13 [east]=14
  [long_deg]=15 [long_min]=16 [long_sec]=17 [set_long]=18 [done]=19 [help]=20 [initialise]=21
  [self_test]=22 [reset]=23)
FOCUS=0

gps_open() {
  e2e_open_dialog alt+c g "$TITLE" "Configure GPS" enabled=0
  FOCUS=0
}
gps_close() {
  e2e_key Escape
  e2e_expect "Escape did not close the dialog" -t 10 nowindow="$TITLE" enabled=1
}
# Moves the focus to a tab stop, forward only past the radio pairs.
gps_go() {
  local n=$((AT[$1] - FOCUS)) key=Tab
  if [ $n -lt 0 ]; then n=$((-n)) key=shift+Tab; fi
  if [ $n -gt 0 ]; then
    # shellcheck disable=SC2046
    e2e_key $(for _ in $(seq $n); do echo "$key"; done)
  fi
  FOCUS=${AT[$1]}
}
# Replaces the text of a field: a tab into an edit selects all of it.
gps_put() {
  if [ "${AT[$1]}" -eq "$FOCUS" ]; then e2e_key Tab shift+Tab; fi
  gps_go "$1"
  local text="$2"
  # xdotool would take a leading minus for an option of its own.
  if [ "${text:0:1}" = - ]; then e2e_key minus; text="${text:1}"; fi
  e2e_type "$text"
}
gps_press() {
  gps_go "$1"
  e2e_key space
}
# gps_fields NAME=TEXT...: the fields show these texts.
gps_fields() {
  local want name got
  e2e_wait -t 5 window="$TITLE" || e2e_fail "the dialog is gone"
  for want in "$@"; do
    name="${want%%=*}"
    got="$(awk -F'|' -v id="${ID[$name]}" '$1 == "control=Edit" && $2 == id { print $3; exit }' \
      "$ART/last_probe.txt")"
    [ "$got" = "${want#*=}" ] || e2e_fail "field $name shows \"$got\", not \"${want#*=}\""
  done
}
# A static control of the probe's last look says exactly TEXT.
gps_static() {
  GPS_TEXT="$1" awk -F'|' '$1 == "control=Static" &&
    substr($0, length($1) + length($2) + 3) == ENVIRON["GPS_TEXT"] { f = 1 }
    END { exit !f }' "$ART/last_probe.txt"
}
# gps_box TEXT: a box "VELDOR" over the dialog, which it disables, says TEXT
# (as the probe escapes it).
gps_box() {
  local deadline=$((SECONDS + 10))
  until e2e_wait -t 1 window=VELDOR && gps_static "$1"; do
    [ $SECONDS -lt $deadline ] ||
      e2e_fail "no box \"$1\"; shown: $(grep '^control=Static' "$ART/last_probe.txt" | tr '\n' ' ')"
  done
  grep -q -F "window=#32770|$TITLE|0|" "$ART/last_probe.txt" ||
    e2e_fail "the box \"$1\" is not owned by the dialog (the dialog takes input)"
}

e2e_fresh_settings
e2e_start_linked --self-test "8 0xC000"
sleep 1

# ---- Opening: the PC's date, the defaults of "GPS Set" ------------------------------------
ini_before="$(e2e_ini_sum)"
gps_open
e2e_shot gps_open
gps_fields "day=$(date +%-d)" "month=$(date +%-m)" "year=$(date +%Y)" offset=0 lat_deg=0 lat_min=0 \
  lat_sec=0.000 long_deg=0 long_min=0 long_sec=0.000
grep -q -E '^control=Edit\|1201\|[0-9]{1,2}$' "$ART/last_probe.txt" || e2e_fail "no hour shown"
grep -q -E '^control=Edit\|1202\|[0-5][0-9]$' "$ART/last_probe.txt" || e2e_fail "no minute shown"
gps_close
e2e_pass "opens with the date of the PC and the default position and offset"

# ---- Refused Sets: their message, nothing on the wire, the settings untouched -------------
# field|typed|button|message
refusals=(
  "hour|24|set_time|Invalid hour value"
  "offset|13|set_time|Invalid UTC offset"
  "year|78|set_date|Invalid year value"
  "lat_sec|59.999|set_lat|Invalid second value"
  "long_deg|-1|set_long|Invalid degree value"
)
before=$(e2e_received | wc -l)
for refusal in "${refusals[@]}"; do
  IFS='|' read -r field typed button message <<<"$refusal"
  gps_open
  gps_put "$field" "$typed"
  gps_press "$button"
  gps_box "$message"
  [ "$field" = hour ] && e2e_shot gps_refused
  e2e_close_box "the box \"$message\" did not close"
  gps_fields "$field=$typed"
  gps_close
done
sleep 2
sent="$(e2e_received_after "$before")"
[ -z "$sent" ] || e2e_fail "refused Sets sent: $(echo "$sent" | tr '\n' '|')"
[ "$(e2e_ini_sum)" = "$ini_before" ] || e2e_fail "a refused Set or Escape changed the settings file"
e2e_pass "${#refusals[@]} refused Sets: each message, the typed text kept, nothing sent, settings untouched"

# ---- Every command on the wire ----------------------------------------------------------------
before=$(e2e_received | wc -l)
gps_open
gps_put hour 0
gps_put minute 5
gps_put second 60
gps_put offset +5
gps_press set_time
e2e_wait_status "Set GPS time command sent" 5 || e2e_fail "no \"Set GPS time command sent\""
gps_fields hour=0 minute=05 second=60 offset=5

gps_put day 1
gps_put month 12
gps_put year 21
gps_press set_date
e2e_wait_status "Set GPS date command sent" 5 || e2e_fail "no \"Set GPS date command sent\""
gps_fields day=1 month=12 year=2021

gps_go north
e2e_key Down
gps_put lat_deg 12
gps_put lat_min 30
gps_put lat_sec 15.5
gps_press set_lat
e2e_wait_status "Set GPS latitude command sent" 5 || e2e_fail "no \"Set GPS latitude command sent\""
gps_fields lat_deg=12 lat_min=30 lat_sec=15.500

gps_go east
e2e_key Down
gps_put long_deg 1
gps_put long_min 2
gps_put long_sec 3.25
gps_press set_long
e2e_wait_status "Set GPS longitude command sent" 5 || e2e_fail "no \"Set GPS longitude command sent\""
gps_fields long_deg=1 long_min=2 long_sec=3.250
e2e_shot gps_set

gps_press initialise
e2e_wait_status "Set GPS initalise command sent" 5 || e2e_fail "no \"Set GPS initalise command sent\""

gps_press reset
gps_box 'Resetting will change all settings to the factory default.\nThis means that the GPS will have to reaquire all the current satellite information before it can produce a valid position fix.\n\nDo you want to continue?'
e2e_shot gps_reset_question
e2e_key y
gps_box 'GPS reset command has been sent.\n\nTo reduce the time to the first position fix, you should now set the latitude & longitude.'
e2e_wait_status "Set GPS reset command sent" 5 || e2e_fail "no \"Set GPS reset command sent\""
e2e_close_box "the reset note did not close"

gps_press self_test
gps_box 'Running a self test will cause the GPS to loose track of current satellites which will have to be reaquired before valid position fixes can be made.\n\nDo you want to continue?'
e2e_key y
e2e_wait_status "GPS self test command sent" 5 || e2e_fail "no \"GPS self test command sent\""
gps_box 'GPS self test failure(s):\n\nAntenna short\n'
grep -q -F 'Antenna open circuit' "$ART/last_probe.txt" && e2e_fail "the report lists the open circuit too"
e2e_wait_status "GPS self test failed (Code 0xC000)" 5 || e2e_fail "no \"GPS self test failed (Code 0xC000)\""
e2e_shot gps_self_test_report
e2e_close_box "the report did not close"

want="OT 19 5 60|OD 1 12 2021|LT -45015500|LG -3723250|OI 1|OI 2|OS|"
e2e_wait_received "$before" 7 5 || true
got="$(e2e_received_after "$before" | tr '\n' '|')"
[ "$got" = "$want" ] || e2e_fail "the wire got \"$got\", not \"$want\""
e2e_pass "the frames on the wire: $want"

e2e_expect_ini "GPS Set" "UTC Offset=5" "Lat N/S=S" "Lat Deg=12" "Lat Min=30" "Lat Sec=15.500" "Long E/W=W" \
  "Long Deg=1" "Long Min=2" "Long Sec=3.250"
e2e_pass "the \"GPS Set\" keys: the offset and the position set"

gps_press "done"
e2e_expect "Done did not close the dialog" -t 10 nowindow="$TITLE" enabled=1

# ---- Reopened: what was set, and Escape leaves the settings alone -------------------------------
ini_before="$(e2e_ini_sum)"
gps_open
gps_fields offset=5 lat_deg=12 lat_min=30 lat_sec=15.500 long_deg=1 long_min=2 long_sec=3.250
e2e_shot gps_reopened
gps_close
[ "$(e2e_ini_sum)" = "$ini_before" ] || e2e_fail "opening and closing the dialog changed the settings file"
e2e_pass "reopened, it shows the offset and position last set; closing it writes nothing"
e2e_check_answering
