#!/usr/bin/env bash
# A port that can't be used: "PC Port" names COM3, which leads to no device,
# and in a second run COM4, a device that is no serial line.
#   - the status bar shows "<< PC port error >>" and no port opens;
#   - the program runs on: it answers, recording stores records at the
#     interval without data, the menus open, and it exits normally;
#   - the controller on COM1 hears nothing.
set -euo pipefail
E2E_SCENARIO=port_error
# shellcheck source=lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

e2e_fresh_settings
e2e_setting Port "PC Port" COM3
e2e_setting General "Record Interval Seconds" 1
e2e_start_sim
e2e_start_program
e2e_wait_status "<< PC port error >>" 30 || e2e_fail "no \"<< PC port error >>\" for COM3"
e2e_status_seen "COM3 opened" && e2e_fail "COM3 said opened"
e2e_status_seen "Port opened" && e2e_fail "a port said opened"
e2e_close_signon
e2e_expect "the error is not what the status bar shows" -t 5 "pane0=<< PC port error >>" pane1=Idle
e2e_shot port_error
e2e_pass "COM3 with no device: \"<< PC port error >>\""

# The program runs on without a port.
e2e_focus
e2e_key F1
e2e_expect "F1 did not start recording without a port" -t 10 pane1=Recording "pane0=Recording started"
e2e_expect "no records stored without a port" -t 15 "pane2=0.02 %"
e2e_key F2
e2e_expect "F2 did not stop recording" -t 10 pane1=Idle "pane0=Recording stopped"
e2e_key alt+r
e2e_expect "the Record menu did not open" -t 5 window=
e2e_shot record_menu
e2e_key Escape Escape
e2e_expect "the Record menu did not close" -t 5 nowindow=
e2e_key alt+f
e2e_expect "the File menu did not open" -t 5 window=
e2e_key x
e2e_expect "no question to save the records" -t 10 window=VELDOR
grep -q -F 'Current data has changed\nSave data ?' "$ART/last_probe.txt" || e2e_fail "not the question to save"
e2e_key n
e2e_wait_exit 15
e2e_status_seen "Port closed" && e2e_fail "a port that never opened said closed"
[ "$(e2e_ini_value "Main window" "Show listing")" = 1 ] || e2e_fail "the exit wrote no window state"
e2e_pass "recorded without a port, menus work, exit as usual"

# ---- COM4: a device that is no serial line -------------------------------------------------
e2e_setting Port "PC Port" COM4
e2e_mark
e2e_start_program
e2e_close_signon
e2e_wait_status "<< PC port error >>" 10 || e2e_fail "no \"<< PC port error >>\" for COM4"
e2e_expect "the error is not what the status bar shows" -t 5 "pane0=<< PC port error >>"
e2e_status_seen "COM4 opened" && e2e_fail "COM4 said opened"
e2e_status_seen "Port opened" && e2e_fail "a port said opened"
e2e_shot port_error_com4
e2e_key alt+f
e2e_expect "the File menu did not open" -t 5 window=
e2e_key x
e2e_wait_exit 15
e2e_pass "COM4, no serial line: \"<< PC port error >>\", exit as usual"

grep -q -e BANNER -e ' RX ' "$SIM_LOG" && e2e_fail "the controller on COM1 was spoken to"
e2e_check_answering
