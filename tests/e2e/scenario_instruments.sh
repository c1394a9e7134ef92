#!/usr/bin/env bash
# The link dialogs of the Configure menu, no settings file (TZR4100 mode on): Escape sends and
# writes nothing; OK in GpsDiffBox, AR3000aBox and TzrBox, each question answered Yes, sends
# exactly their frames and writes their keys; TzrBox's enable box and "Set inital channel now"
# send at once, its spin stops at 99; PortsBox to COM4 closes the port, fails, COM1 reopens it.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

GPSDIFF="VELDOR - Configure GPS Differential Mode"
AR="VELDOR - Configure AR3000A"
TZR="VELDOR - Configure TZR4100"
PORTS="VELDOR - Port Setting"
open_dialog() {
  e2e_ini_mark
  e2e_wire_mark
  e2e_open_dialog alt+c "${*:3}" "$1" "$2" enabled=0
}

e2e_start_linked
sleep 1

for dialog in "$GPSDIFF|Configure differential GPS input|a d" "$AR|Configure AR3000A|a a" \
              "$PORTS|Configure ports|p"; do
  IFS='|' read -r title status keys <<<"$dialog"
  open_dialog "$title" "$status" $keys
  e2e_step Escape "nowindow=$title; enabled=1" unchanged none
done
e2e_pass "GpsDiffBox, AR3000aBox, PortsBox: Escape sends nothing and writes nothing"

open_dialog "$GPSDIFF" "Configure differential GPS input" a d
e2e_rows e2e_step <<EOF
space Tab End | | | | gpsdiff
Return | box=Enabling GPS differential scan mode will disable TZR4100 mode.* | |
y | nowindow=$GPSDIFF; enabled=1 | [GPS Diff] Enable GPS Diff mode=1; Baud Rate=9600; [TZR4100] Enable TZR4100 mode=0 | GD 1 9600
EOF

# Channel 1 at 145.5 MHz, CW, the attenuator on; past channels 2-4 to "Baud rate": 9600.
open_dialog "$AR" "Configure AR3000A" a a
e2e_rows e2e_step <<EOF
space Tab :145.5 Tab End Tab space Tab Tab Tab Tab Tab Tab Tab Tab Tab Tab End | | | | ar3000a
Return | box=Enabling AR3000A scan mode will disable GPS differential mode.* | |
y | nowindow=$AR; enabled=1 | [AR3000A] Enable AR3000A mode=1; Baud Rate=9600; Ch1 Freq=145.5; Ch1 Mode=CW; Ch1 Att on=1; Ch2 Freq=89.0; Ch4 Mode=WFM; Ch4 Att on=0; [GPS Diff] Enable GPS Diff mode=0 | AC R145.5C,T89.0W,T90.0W,T91.0W,9600; AS 1
EOF
e2e_pass "OK sends and writes their keys: GpsDiffBox GD 1 9600, AR3000aBox the AC body and AS 1"

open_dialog "$TZR" "Configure TZR4100" a t
e2e_step space "" "" "MS 1"
e2e_step Escape "nowindow=$TZR; enabled=1" unchanged "MS 1; MS 0"

open_dialog "$TZR" "Configure TZR4100" a t
e2e_keys space Tab :03 Tab :150
# The up arrow of "Number of channels" (the dialog is centred on the
# 1024x768 desktop): 150 + 1 stops at 99.
xdotool mousemove 583 372 click 1
e2e_rows e2e_step <<EOF
      | control=Edit,1474,99 | |
Tab Tab space | status=TZR4100 channel set to 3 | |
Tab :9 | | | | tzr
Return | box=Enabling TZR4100 mode will disable AR3000A scan mode.* | |
y | nowindow=$TZR; enabled=1 | [TZR4100] Enable TZR4100 mode=1; Inital channel=03; Number of channels=99; Input channel=4; [AR3000A] Enable AR3000A mode=0 | MS 1; MC 3; MS 1; MN 99; MC 3; MI 1
EOF
e2e_pass "TzrBox: the enable box sends MS 1 at once, Escape MS 0, the file as it was; spin up stops at 99; Set now sends MC 3; OK sends MS 1, MN 99, MC 3, MI 1 and stores 99 and 4"

open_dialog "$PORTS" "Configure ports" p
e2e_key End
e2e_shot ports
e2e_step Return "nowindow=$PORTS; enabled=1; status=<< PC port error >>"
e2e_same "the port change's status lines" "$(tail -n +$((E2E_MARK + 1)) "$STATUS_LINES" | sed -n 's/^[0-9]* pane0=//p' |
  grep -x -e "Port closed" -e "<< PC port error >>" | tr '\n' '|')" "Port closed|<< PC port error >>|"
e2e_expect_ini Port "PC Port=COM4"
e2e_expect_wire "the port change" "OP 0"

# The simulator keeps the pty the program let go: a new one for COM1.
kill "$SIM_PID" 2>/dev/null || true
wait "$SIM_PID" 2>/dev/null || true
mv "$SIM_LOG" "$ART/sim_before_port_change.log"
e2e_start_sim
open_dialog "$PORTS" "Configure ports" p
e2e_step "Home Return" "nowindow=$PORTS; enabled=1; status=COM1 opened" "[Port] PC Port=COM1"
# Until data come, the program asks again with "OP 1" every second.
e2e_expect_wire -p "COM1 again" "MS 1" "MN 99" "MC 3" "MI 1" "OP 1"
[ -z "$(e2e_received_after "$E2E_WIRE" | tail -n +6 | grep -v -x "OP 1")" ] ||
  e2e_fail "COM1 again: more than the TZR4100 set-up and OP 1: $(e2e_received_after "$E2E_WIRE" | tr '\n' ' ')"
e2e_pass "PortsBox: COM4 stored; the port closes (OP 0, \"Port closed\") and COM4 fails; COM1 again: \"COM1 opened\", the TZR4100 set-up and OP 1"
