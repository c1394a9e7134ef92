#!/usr/bin/env bash
# Recording through a faulty link: a flood of "NA", then a sample every 2 s, a wrong check
# on every 5th frame, garbage before every 7th, frames in pieces, 20 s of silence. The
# program answers throughout, each spoiled frame gets one "NA", the silence's status lines
# come and go with it; the saved file holds every unspoiled sample, the silence not live.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

e2e_setting General "Record Interval Seconds" 1
since=$(date +%s)
e2e_start_sim --period-ms 2000 --flood-na 300 --bad-check-every 5 --garbage-every 7 --split \
  --silence-after 16 --silence-for 20
e2e_start_program
e2e_wait_log "RX OP 1" 30 || e2e_fail "no OP 1 from the program"
e2e_expect "the program does not show itself during the flood of NA" -t 10 frames=1 caption=VELDOR
e2e_close_signon
e2e_focus
# The operator starts once data come: the program asks with "OP 1" every
# second while it has none, so two samples sent after its last "OP 1" mean
# that the flood is through and data flow.
e2e_until 60 '[ "$(sed -n "$(grep -n " RX OP 1$" "$SIM_LOG" | tail -1 | cut -d: -f1),\$p" "$SIM_LOG" |
               grep -c " TX RA ")" -ge 2 ]' || e2e_fail "no data reached the program after the flood"

span_from=$(($(e2e_samples_sent) + 1))
e2e_record F1
e2e_wait_log "FAULT .*bad-check" 20 || e2e_fail "the simulator spoils no frame"
e2e_shot recording

e2e_wait_log "NOTE silence begins" 30 || e2e_fail "the simulator did not fall silent"
e2e_status_seen "No communications from controller" && e2e_fail "the loss of communication showed before the silence"
e2e_expect_status "No communications from controller" 20
grep -q "NOTE silence ends" "$SIM_LOG" && e2e_fail "the loss of communication showed only after the silence"
e2e_expect "the status bar does not show the loss while recording" -t 5 \
  "pane0=No communications from controller" pane1=Recording
e2e_shot silence
e2e_expect_status "Communication from controller returned" 30
grep -q "NOTE silence ends" "$SIM_LOG" || e2e_fail "communication returned while the simulator was silent"
e2e_same "the link status lines" \
  "$(e2e_status_lines | grep -x -e "No communications from controller" -e "Communication from controller returned" | tr '\n' '|')" \
  "No communications from controller|Communication from controller returned|"
e2e_pass "\"No communications from controller\" during the silence, \"Communication from controller returned\" when data came back"

e2e_wait_samples 4 20 || e2e_fail "the simulator stopped sending"
e2e_record F2
span="$span_from:$(e2e_samples_sent)"
e2e_expect_status "Received invalid data from controller" 0

# Once the flood is long over (the simulator sends no "NA" of its own after
# it), every spoiled frame gets exactly one "NA" back: counted from the end
# of the silence.
after_silence() { sed -n '/ NOTE silence ends$/,$p' "$SIM_LOG"; }
spoiled_sent() { after_silence | grep -c -E '^[0-9]+ FAULT .*(bad-check|garbage)' || true; }
na_received() { after_silence | grep -c -x '[0-9]* RX NA' || true; }
[ "$(spoiled_sent)" -ge 1 ] || e2e_fail "no frame spoiled after the silence"
e2e_until 10 '[ "$(na_received)" = "$(spoiled_sent)" ]' ||
  e2e_fail "$(spoiled_sent) frames spoiled, $(na_received) NA received"
e2e_pass "$(spoiled_sent) spoiled frames, each answered with one NA"

# The controller goes on sending, bad frames too: the status texts of the
# save are soon replaced; e2e_save_as looks for them among all that were set.
e2e_save_as "$DAT"
until_=$(($(date +%s) + 1))
shown="$(python3 "$CHECK_DAT" --gauge "$DAT")"
e2e_expect "the store gauge does not show the records of the file ($shown)" -t 5 "pane2=$shown"
e2e_shot saved
e2e_check_dat "$DAT" --min-records 20 --span "$span" --expect-stale
e2e_quit
e2e_pass "no sample that came through unspoiled is lost; the silence is recorded as not live; the program ended"
