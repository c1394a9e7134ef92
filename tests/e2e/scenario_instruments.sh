#!/usr/bin/env bash
# The link dialogs of the Configure menu, with the simulator on COM1 and an
# empty settings file, so that the first port open turns TZR4100 mode on:
#   - each dialog closed with Escape sends nothing (TzrBox: only the "MS"
#     that puts the enable box back) and leaves the settings file's bytes;
#   - GpsDiffBox: enabled at 9600 baud, the question about TZR4100 answered
#     Yes: exactly "GD 1 9600"; its keys written, the TZR4100 key "0";
#   - AR3000aBox: channel 1 at "145.5" MHz, CW, attenuator on, 9600 baud,
#     the question about differential GPS answered Yes: exactly the "AC"
#     body and "AS 1"; its keys written;
#   - TzrBox: the enable box sends "MS 1" at once, Escape "MS 0"; then
#     "Set inital channel now" sends "MC 3"; 150 channels spun up show 99;
#     OK with those and input channel 9, the question about AR3000A
#     answered Yes, sends "MS 1", "MN 99", "MC 3", "MI 1" and stores 99
#     and 4;
#   - PortsBox: choosing the last port listed (COM4, no serial line) closes
#     the port ("OP 0", "Port closed") and fails to open it; choosing COM1
#     again (with a new simulator) opens it ("COM1 opened") with the
#     TZR4100 set-up and "OP 1".
set -euo pipefail
E2E_SCENARIO=instruments
# shellcheck source=lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

wire_mark() { WIRE=$(e2e_received | wc -l); }
# expect_wire WHAT BODY...: exactly these bodies went out since wire_mark.
expect_wire() {
  local what="$1" want got
  shift
  want="$(printf '%s\n' "$@" | sed '/^$/d')"
  [ -z "$want" ] || e2e_wait_received "$WIRE" $# 10 || true
  sleep 0.5
  got="$(e2e_received_after "$WIRE")"
  [ "$got" = "$want" ] || e2e_fail "$what: sent [$(echo "$got" | tr '\n' ' ')], not [$*]"
}
# open_dialog TITLE STATUS KEY...: the menu keys after Alt+C.
open_dialog() { e2e_open_dialog alt+c "${*:3}" "$1" "$2" enabled=0; }
close_dialog() {
  e2e_key "$2"
  e2e_expect "the dialog \"$1\" did not close" -t 10 nowindow="$1" enabled=1
}
# answer_yes TEXT: a question "VELDOR" saying TEXT (its first line) gets Yes.
answer_yes() {
  e2e_expect "no question \"$1\"" -t 10 window=VELDOR
  grep -q -F "$1" "$ART/last_probe.txt" || e2e_fail "the question does not say \"$1\""
  e2e_key y
}
# cancel_keeps TITLE STATUS KEY...: Escape sends nothing, the file stays.
cancel_keeps() {
  local title="$1" before
  before="$(e2e_ini_sum)"
  wire_mark
  open_dialog "$@"
  close_dialog "$title" Escape
  expect_wire "Escape in \"$title\""
  [ "$(e2e_ini_sum)" = "$before" ] || e2e_fail "Escape in \"$title\" changed the settings file"
}

e2e_fresh_settings
e2e_start_linked
sleep 1

# ---- GpsDiffBox ---------------------------------------------------------------------------
GPSDIFF="VELDOR - Configure GPS Differential Mode"
cancel_keeps "$GPSDIFF" "Configure differential GPS input" a d
wire_mark
open_dialog "$GPSDIFF" "Configure differential GPS input" a d
e2e_key space Tab End   # enable; "Baud Rate": the last, 9600
e2e_shot gpsdiff
e2e_key Return
answer_yes "Enabling GPS differential scan mode will disable TZR4100 mode."
e2e_expect "the dialog stayed open" -t 10 nowindow="$GPSDIFF" enabled=1
expect_wire "GpsDiffBox OK" "GD 1 9600"
e2e_expect_ini "GPS Diff" "Enable GPS Diff mode=1" "Baud Rate=9600"
e2e_expect_ini TZR4100 "Enable TZR4100 mode=0"
e2e_pass "GpsDiffBox: Escape sends nothing; OK sends GD 1 9600 and writes its keys"

# ---- AR3000aBox ---------------------------------------------------------------------------
AR="VELDOR - Configure AR3000A"
cancel_keeps "$AR" "Configure AR3000A" a a
wire_mark
open_dialog "$AR" "Configure AR3000A" a a
e2e_key space Tab
e2e_type "145.5"
e2e_key Tab End Tab space  # mode CW, attenuator on
e2e_key Tab Tab Tab Tab Tab Tab Tab Tab Tab Tab End  # past channels 2-4 to "Baud rate": 9600
e2e_shot ar3000a
e2e_key Return
answer_yes "Enabling AR3000A scan mode will disable GPS differential mode."
e2e_expect "the dialog stayed open" -t 10 nowindow="$AR" enabled=1
expect_wire "AR3000aBox OK" "AC R145.5C,T89.0W,T90.0W,T91.0W,9600" "AS 1"
e2e_expect_ini AR3000A "Enable AR3000A mode=1" "Baud Rate=9600" "Ch1 Freq=145.5" "Ch1 Mode=CW" \
  "Ch1 Att on=1" "Ch2 Freq=89.0" "Ch4 Mode=WFM" "Ch4 Att on=0"
e2e_expect_ini "GPS Diff" "Enable GPS Diff mode=0"
e2e_pass "AR3000aBox: Escape sends nothing; OK sends the AC body and AS 1 and writes its keys"

# ---- TzrBox -------------------------------------------------------------------------------
TZR="VELDOR - Configure TZR4100"
before="$(e2e_ini_sum)"
wire_mark
open_dialog "$TZR" "Configure TZR4100" a t
e2e_key space
expect_wire "the enable box" "MS 1"
close_dialog "$TZR" Escape
expect_wire "the enable box, then Escape" "MS 1" "MS 0"
[ "$(e2e_ini_sum)" = "$before" ] || e2e_fail "Escape in TzrBox left the settings file changed"
e2e_pass "TzrBox: the enable box sends MS 1 at once, Escape MS 0, the file as it was"

wire_mark
open_dialog "$TZR" "Configure TZR4100" a t
e2e_key space Tab
e2e_type "03"
e2e_key Tab
e2e_type "150"
# The up arrow of "Number of channels" (the dialog is centred on the
# 1024x768 desktop): 150 + 1 stops at 99.
xdotool mousemove 583 372 click 1
deadline=$((SECONDS + 5))
until e2e_wait -t 1 window="$TZR" && grep -q -x -F 'control=Edit|1474|99' "$ART/last_probe.txt"; do
  [ $SECONDS -lt $deadline ] || e2e_fail "the spin up did not make 150 into 99: $(grep 'Edit|1474' "$ART/last_probe.txt")"
done
e2e_key Tab Tab space  # "Set inital channel now"
e2e_wait_status "TZR4100 channel set to 3" 5 || e2e_fail "no \"TZR4100 channel set to 3\""
e2e_key Tab
e2e_type "9"
e2e_shot tzr
e2e_key Return
answer_yes "Enabling TZR4100 mode will disable AR3000A scan mode."
e2e_expect "the dialog stayed open" -t 10 nowindow="$TZR" enabled=1
expect_wire "TzrBox OK" "MS 1" "MC 3" "MS 1" "MN 99" "MC 3" "MI 1"
e2e_expect_ini TZR4100 "Enable TZR4100 mode=1" "Inital channel=03" "Number of channels=99" \
  "Input channel=4"
e2e_expect_ini AR3000A "Enable AR3000A mode=0"
e2e_pass "TzrBox: spin up stops at 99; Set now sends MC 3; OK sends MS 1, MN 99, MC 3, MI 1 and stores 99 and 4"

# ---- PortsBox -----------------------------------------------------------------------------
PORTS="VELDOR - Port Setting"
cancel_keeps "$PORTS" "Configure ports" p
wire_mark
open_dialog "$PORTS" "Configure ports" p
e2e_key End
e2e_shot ports
e2e_mark
close_dialog "$PORTS" Return
e2e_wait_status "<< PC port error >>" 15 || e2e_fail "no \"<< PC port error >>\" for COM4"
tail -n +$((E2E_MARK + 1)) "$STATUS_LINES" | sed -n 's/^[0-9]* pane0=//p' >"$ART/ports_lines.txt"
grep -q -x "Port closed" "$ART/ports_lines.txt" || e2e_fail "no \"Port closed\""
[ "$(grep -n -x -e "Port closed" -e "<< PC port error >>" "$ART/ports_lines.txt" | cut -d: -f2 | tr '\n' '|')" = \
  "Port closed|<< PC port error >>|" ] || e2e_fail "not \"Port closed\" then the error: $(tr '\n' '|' <"$ART/ports_lines.txt")"
e2e_expect_ini Port "PC Port=COM4"
expect_wire "the port change" "OP 0"
e2e_pass "PortsBox: COM4 stored; the port closes (OP 0, \"Port closed\") and COM4 fails"

# The simulator keeps the pty the program let go: a new one for COM1.
kill "$SIM_PID" 2>/dev/null || true
wait "$SIM_PID" 2>/dev/null || true
mv "$SIM_LOG" "$ART/sim_before_port_change.log"
e2e_start_sim
wire_mark
open_dialog "$PORTS" "Configure ports" p
e2e_key Home
e2e_mark
close_dialog "$PORTS" Return
e2e_wait_status "COM1 opened" 15 || e2e_fail "no \"COM1 opened\""
e2e_expect_ini Port "PC Port=COM1"
expect_wire "COM1 again" "MS 1" "MN 99" "MC 3" "MI 1" "OP 1"
e2e_pass "PortsBox: COM1 again: \"COM1 opened\", the TZR4100 set-up and OP 1"

e2e_check_answering
