#!/usr/bin/env bash
# A port that can't be used: "PC Port" COM3, which leads to no device, then COM4, a device that is
# no serial line: "<< PC port error >>" in the status bar and no port opened; the program records
# without data, its menus open and it exits normally; COM1 hears nothing.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# refused_port PORT SHOT: the program started with "PC Port" PORT shows
# "<< PC port error >>" and never says that a port opened.
refused_port() {
  e2e_setting Port "PC Port" "$1"
  e2e_mark
  e2e_start_program
  e2e_expect_status "<< PC port error >>" 30
  e2e_status_seen "$1 opened" || e2e_status_seen "Port opened" && e2e_fail "a port said opened"
  e2e_close_signon
  e2e_expect "the error is not what the status bar shows" -t 5 "pane0=<< PC port error >>" pane1=Idle
  e2e_shot "$2"
}

e2e_setting General "Record Interval Seconds" 1
e2e_start_sim
refused_port COM3 port_error

e2e_focus
e2e_record F1 "pane0=Recording started"
e2e_expect "no records stored without a port" -t 15 "pane2=0.02 %"
e2e_record F2 "pane0=Recording stopped"
e2e_menu alt+r
e2e_shot record_menu
e2e_step "Escape Escape" "nowindow="
e2e_quit n
e2e_status_seen "Port closed" && e2e_fail "a port that never opened said closed"
e2e_expect_ini "Main window" "Show listing=1"
e2e_pass "COM3 with no device: \"<< PC port error >>\"; recorded without a port, menus work, exit as usual"

refused_port COM4 port_error_com4
e2e_quit
e2e_pass "COM4, no serial line: \"<< PC port error >>\", exit as usual"

! grep -q -e BANNER -e ' RX ' "$SIM_LOG" || e2e_fail "the controller on COM1 was spoken to"
