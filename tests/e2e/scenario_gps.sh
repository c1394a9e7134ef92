#!/usr/bin/env bash
# Configure > GPS, the simulator answering "OS" with "ET 8 0xC000": the PC's date and the
# "GPS Set" defaults; refused Sets in a box over the dialog, nothing sent or written; each Set,
# Initalise, Reset and Self test puts its frame on the wire, writes its fields back and stores
# the keys (which fill the dialog: Link.GpsOpeningFields); the report lists "Antenna short" alone.
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

gps_open() {
  e2e_open_dialog alt+c g "$TITLE" "Configure GPS" enabled=0
  FOCUS=0
}
gps_close() { e2e_step Escape "nowindow=$TITLE; enabled=1"; }
# Moves the focus to a tab stop, forward only past the radio pairs.
gps_go() {
  local n=$((AT[$1] - FOCUS)) key=Tab
  if [ $n -lt 0 ]; then n=$((-n)) key=shift+Tab; fi
  # shellcheck disable=SC2046
  [ $n -eq 0 ] || e2e_key $(yes "$key" | head -n $n)
  FOCUS=${AT[$1]}
}
# Replaces the text of a field: a tab into an edit selects all of it.
gps_put() {
  if [ "${AT[$1]}" -eq "$FOCUS" ]; then e2e_key Tab shift+Tab; fi
  gps_go "$1"
  e2e_type "$2"
}
gps_press() {
  gps_go "$1"
  e2e_key space
}
gps_fields() {
  local want expect="window=$TITLE"
  for want in "$@"; do expect+="; control=Edit,${ID[${want%%=*}]},${want#*=}"; done
  e2e_step "" "$expect"
}
# gps_refused FIELD TYPED BUTTON MESSAGE: the Set refused with MESSAGE in a box over the
# dialog; the field keeps what was typed (the time's and date's: Link.GpsSetTimeAndDate).
gps_refused() {
  gps_open
  gps_put "$1" "$2"
  gps_press "$3"
  e2e_box "$4" "$TITLE"
  [ "$1" != lat_sec ] || e2e_shot gps_refused
  e2e_refused "$TITLE" "$4"
  gps_fields "$1=$2"
  gps_close
}
# gps_set FIELD=TEXT... | BUTTON | STATUS | FIELD=SHOWN...: the fields typed
# (a radio pair given its arrow key), the Set pressed; its status line, and
# the fields written back.
gps_set() {
  local field
  for field in $1; do
    case "${field%%=*}" in
      north | east) gps_go "${field%%=*}" && e2e_key "${field#*=}" ;;
      *) gps_put "${field%%=*}" "${field#*=}" ;;
    esac
  done
  gps_press "$2"
  e2e_expect_status "$3"
  [ -z "${4:-}" ] || gps_fields $4
}

e2e_start_linked --self-test "8 0xC000"
sleep 1

e2e_ini_mark
gps_open
e2e_shot gps_open
gps_fields "day=$(date +%-d)" "month=$(date +%-m)" "year=$(date +%Y)" offset=0 lat_deg=0 lat_min=0 \
  lat_sec=0.000 long_deg=0 long_min=0 long_sec=0.000
grep -q -E '^control=Edit\|1201\|[0-9]{1,2}$' "$ART/last_probe.txt" || e2e_fail "no hour shown"
grep -q -E '^control=Edit\|1202\|[0-5][0-9]$' "$ART/last_probe.txt" || e2e_fail "no minute shown"
gps_close
e2e_pass "opens with the date of the PC and the default position and offset"

e2e_wire_mark
gps_refused lat_sec 59.999 set_lat "Invalid second value"
gps_refused long_deg -1 set_long "Invalid degree value"
sleep 1.5
e2e_expect_wire "refused Sets"
e2e_ini_unchanged "a refused Set or Escape"
e2e_pass "two refused Sets: each message, the typed text kept, nothing sent, settings untouched"

e2e_wire_mark
gps_open
e2e_rows gps_set <<'EOF'
hour=0 minute=5 second=60 offset=+5           | set_time   | Set GPS time command sent      | hour=0 minute=05 second=60 offset=5
day=1 month=12 year=21                        | set_date   | Set GPS date command sent      | day=1 month=12 year=2021
north=Down lat_deg=12 lat_min=30 lat_sec=15.5 | set_lat    | Set GPS latitude command sent  | lat_deg=12 lat_min=30 lat_sec=15.500
east=Down long_deg=1 long_min=2 long_sec=3.25 | set_long   | Set GPS longitude command sent | long_deg=1 long_min=2 long_sec=3.250
                                              | initialise | Set GPS initalise command sent |
EOF
e2e_shot gps_set

gps_press reset
e2e_box 'Resetting will change all settings to the factory default.\nThis means that the GPS will have to reaquire all the current satellite information before it can produce a valid position fix.\n\nDo you want to continue?' "$TITLE"
e2e_shot gps_reset_question
e2e_key y
e2e_box 'GPS reset command has been sent.\n\nTo reduce the time to the first position fix, you should now set the latitude & longitude.' "$TITLE"
e2e_expect_status "Set GPS reset command sent"
e2e_close_box "the reset note did not close"

gps_press self_test
e2e_box 'Running a self test will cause the GPS to loose track of current satellites which will have to be reaquired before valid position fixes can be made.\n\nDo you want to continue?' "$TITLE"
e2e_step y "status=GPS self test command sent"
e2e_box 'GPS self test failure(s):\n\nAntenna short\n' "$TITLE"
e2e_expect_status "GPS self test failed (Code 0xC000)"
e2e_shot gps_self_test_report
e2e_close_box "the report did not close"

e2e_expect_wire "the GPS commands" "OT 19 5 60" "OD 1 12 2021" "LT -45015500" "LG -3723250" "OI 1" "OI 2" "OS"
e2e_expect_ini "GPS Set" "UTC Offset=5" "Lat N/S=S" "Lat Deg=12" "Lat Min=30" "Lat Sec=15.500" "Long E/W=W" \
  "Long Deg=1" "Long Min=2" "Long Sec=3.250"
e2e_pass "the frames on the wire: OT 19 5 60, OD 1 12 2021, LT -45015500, LG -3723250, OI 1, OI 2, OS; the \"GPS Set\" keys"

gps_press "done"
e2e_expect "Done did not close the dialog" -t 10 nowindow="$TITLE" enabled=1
