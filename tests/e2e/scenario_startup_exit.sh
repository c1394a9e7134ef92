#!/usr/bin/env bash
# Start-up with no settings file: the banner, then "MS 1", "MN 10", "MC 1", "MI 1", "OP 1";
# the frame "VELDOR" with four child windows, Text Tags on top, the sign-on box closing by
# itself, the first status texts; F1 records at 5 seconds stepping the TZR4100 channel, F2
# stops; File > Exit sends "OP 0", asks to save, and writes the window keys.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

e2e_start_sim
e2e_start_program

e2e_wait_log "RX OP 1" 30 || e2e_fail "no OP 1 from the program"
e2e_shot signon
e2e_same "the banner and the start-up frames" "$(sed -n 's/^[0-9]* \(BANNER VELDOR (Software)\|RX .*\)$/\1/p' "$SIM_LOG" |
  sed -n '1,6p' | tr '\n' '|')" "BANNER VELDOR (Software)|RX MS 1|RX MN 10|RX MC 1|RX MI 1|RX OP 1|"

e2e_expect "the sign-on box is not shown over a disabled frame" -t 10 window= enabled=0
e2e_expect "the sign-on box did not close by itself" -t 15 nowindow= enabled=1
e2e_expect "the frame is not as a first start leaves it" -t 10 caption=VELDOR pane1=Idle "pane2=0 %"
e2e_same "the child windows, topmost first" "$(sed -n 's/^child=//p' "$ART/last_probe.txt" | tr '\n' ',')" \
  "Veldor_Tags|Text Tags,Veldor_Listing|Listing,Veldor_Plot|Plot,Veldor_Chart|Chart,"
read_cal="Read calibration file 'Default.cal'"
e2e_same "the first status texts" "$(sed -n '1,3s/^[0-9]* //p' "$STATUS_LINES" | tr '\n' '|')$(e2e_status_lines |
  grep -x -e "$read_cal" -e "COM1 opened" -e "Port opened" | tr '\n' '|')" \
  "pane0=Initalising...|pane1=Idle|pane2=0 %|$read_cal|$read_cal|$read_cal|$read_cal|COM1 opened|Port opened|"
e2e_shot started
e2e_pass "frame, four child windows with Text Tags on top; status: curves read, COM1 opened, Port opened"

e2e_focus
e2e_wire_mark
e2e_record F1
e2e_expect_status "Recording started"
e2e_expect_wire -p "F1" "MC 1" "MI 0"
e2e_until 15 '[ "$(e2e_received_after "$E2E_WIRE" | tail -n +3 | grep -c "^MC " || true)" -ge 1 ]' ||
  e2e_fail "no channel step while recording"
e2e_expect "no record stored" -t 5 "pane2=0.01 %"
e2e_shot recording

e2e_record F2 pane0="Recording stopped"
steps=$(e2e_received | grep -c "^MC " || true)
# At 5 seconds a record, and a step, would have come meanwhile.
e2e_wait_samples 6 20 || e2e_fail "the simulator stopped sending"
[ "$steps" = "$(e2e_received | grep -c "^MC " || true)" ] || e2e_fail "the channel is still stepped after F2"
e2e_shot stopped
e2e_pass "F1 records: MC 1, MI 0, a record, a channel step; F2 stops it"

e2e_key alt+f
e2e_shot file_menu 0.5
e2e_key x
e2e_wait_log "RX OP 0" 10 || e2e_fail "no OP 0 at exit"
e2e_box 'Current data has changed\nSave data ?'
grep -q '^control=Button|.*|&No$' "$ART/last_probe.txt" || e2e_fail "the question has no No button"
e2e_shot exit_question
e2e_key n
e2e_wait_exit 15

e2e_expect_ini "Main window" "Show listing=1" "Show plot=1" "Show chart=1" "Show tags=1" Maximised=0
# The Text Tags window has a fixed size and keeps only its origin.
for section in "Main window" Listing Plot Chart "Text Tags"; do
  for key in "Origin X" "Origin Y" Width Height; do
    [ "$section/$key" != "Text Tags/Width" ] || break
    [[ "$(e2e_ini_value "$section" "$key")" =~ ^-?[0-9]+$ ]] || e2e_fail "$section: $key is '$(e2e_ini_value "$section" "$key")'"
  done
done
[ "$(e2e_ini_value "Main window" Width)" -gt 100 ] || e2e_fail "Main window: Width too small"
e2e_pass "OP 0, the question answered; the Main window keys and the places of the four child windows written"
