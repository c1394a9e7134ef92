#!/usr/bin/env bash
# Start-up with no settings file, Start and Stop, and the exit:
#   - the banner reaches the controller, then "MS 1", "MN 10", "MC 1",
#     "MI 1" and "OP 1" in that order;
#   - the frame comes up titled "VELDOR" with its four child windows, the
#     Text Tags window on top, the sign-on box closing by itself, and the
#     status bar showing "Initalising...", "Idle" and "0 %", the curves
#     read from Default.cal, "COM1 opened" and "Port opened";
#   - F1 starts recording at the default interval of 5 seconds (the TZR4100
#     channel is set and stepped per record), F2 stops it;
#   - File > Exit sends "OP 0", asks to save the changed data (answered No),
#     and writes the "Main window" keys and each child window's place.
set -euo pipefail
E2E_SCENARIO=startup_exit
# shellcheck source=lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

e2e_fresh_settings
e2e_start_sim
e2e_start_program

# ---- Start-up --------------------------------------------------------------------------
e2e_wait_log "RX OP 1" 30 || e2e_fail "no OP 1 from the program"
e2e_shot signon
grep -q "BANNER VELDOR (Software)" "$SIM_LOG" || e2e_fail "no banner"
first="$(e2e_received | sed -n '1,5p' | tr '\n' '|')"
[ "$first" = "MS 1|MN 10|MC 1|MI 1|OP 1|" ] || e2e_fail "start-up frames were: $first"
banner_line=$(grep -n -m 1 "BANNER VELDOR" "$SIM_LOG" | cut -d: -f1)
ms_line=$(grep -n -m 1 "RX MS 1" "$SIM_LOG" | cut -d: -f1)
[ "$banner_line" -lt "$ms_line" ] || e2e_fail "the banner came after the first frame"
e2e_pass "banner, then MS 1, MN 10, MC 1, MI 1, OP 1"

# The sign-on box stands for a few seconds and closes by itself.
e2e_expect "the sign-on box is not shown over a disabled frame" -t 10 window= enabled=0
e2e_expect "the sign-on box did not close by itself" -t 15 nowindow= enabled=1
e2e_expect "the frame is not as a first start leaves it" -t 10 caption=VELDOR pane1=Idle "pane2=0 %"
children="$(sed -n 's/^child=//p' "$ART/last_probe.txt" | tr '\n' ',')"
[ "$children" = "Veldor_Tags|Text Tags,Veldor_Listing|Listing,Veldor_Plot|Plot,Veldor_Chart|Chart," ] ||
  e2e_fail "child windows, topmost first: $children"
# What the status bar showed, in order: the first texts, the four curves
# read from Default.cal, then the port.
first_texts="$(sed -n '1,3s/^[0-9]* //p' "$STATUS_LINES" | tr '\n' '|')"
[ "$first_texts" = "pane0=Initalising...|pane1=Idle|pane2=0 %|" ] || e2e_fail "first status texts: $first_texts"
[ "$(e2e_status_lines | grep -c -x "Read calibration file 'Default.cal'")" = 4 ] ||
  e2e_fail "Default.cal not read for the four channels"
opened="$(e2e_status_lines | grep -x -e "COM1 opened" -e "Port opened" | sed -n '1,2p' | tr '\n' '|')"
[ "$opened" = "COM1 opened|Port opened|" ] || e2e_fail "the port opening said: $opened"
e2e_shot started
e2e_pass "frame, four child windows with Text Tags on top; status: curves read, COM1 opened, Port opened"

# ---- F1: recording at 5 seconds; the TZR4100 channel is set, then stepped per record ----
e2e_focus
before=$(e2e_received | wc -l)
e2e_key F1
e2e_expect "F1 did not start recording" -t 10 pane1=Recording
e2e_wait_status "Recording started" 5 || e2e_fail "no \"Recording started\" status line"
e2e_wait_received "$before" 2 5 || e2e_fail "F1 sent no frames"
after_start="$(e2e_received_after "$before" | sed -n '1,2p' | tr '\n' '|')"
[ "$after_start" = "MC 1|MI 0|" ] || e2e_fail "F1 sent: $after_start"
# The first record comes after the 5-second interval and steps the channel.
deadline=$((SECONDS + 15))
until [ "$(e2e_received | tail -n +$((before + 3)) | grep -c "^MC " || true)" -ge 1 ]; do
  [ $SECONDS -lt $deadline ] || e2e_fail "no channel step while recording"
  sleep 0.2
done
e2e_expect "no record stored" -t 5 "pane2=0.01 %"
e2e_shot recording
e2e_pass "F1 starts recording: MC 1, MI 0, a record, a channel step"

# ---- F2: recording stops; no more steps while 6 more samples arrive --------------------
e2e_key F2
e2e_expect "F2 did not stop recording" -t 10 pane1=Idle pane0="Recording stopped"
steps=$(e2e_received | grep -c "^MC " || true)
# At 5 seconds a record, and a step, would have come meanwhile.
e2e_wait_samples 6 20 || e2e_fail "the simulator stopped sending"
steps_later=$(e2e_received | grep -c "^MC " || true)
[ "$steps" = "$steps_later" ] || e2e_fail "the channel is still stepped after F2"
e2e_shot stopped
e2e_pass "F2 stops recording"

# ---- Exit: "OP 0", the question, the window state ---------------------------------------
e2e_key alt+f
sleep 0.5
e2e_shot file_menu
e2e_key x
e2e_wait_log "RX OP 0" 10 || e2e_fail "no OP 0 at exit"
e2e_expect "no question to save the changed data" -t 10 window=VELDOR
grep -q -F 'control=Static|65535|Current data has changed\nSave data ?' "$ART/last_probe.txt" ||
  grep -q -F 'Current data has changed\nSave data ?' "$ART/last_probe.txt" ||
  e2e_fail "the question is not \"Current data has changed\\nSave data ?\""
grep -q '^control=Button|.*|&No$' "$ART/last_probe.txt" || e2e_fail "the question has no No button"
e2e_shot exit_question
e2e_key n
e2e_wait_exit 15
e2e_pass "OP 0 sent, the question answered, program ended"

[ -f "$INI" ] || e2e_fail "no settings file written"
e2e_expect_ini "Main window" "Show listing=1" "Show plot=1" "Show chart=1" "Show tags=1" Maximised=0
# The Text Tags window has a fixed size and keeps only its origin.
for place in "Main window:Origin X,Origin Y,Width,Height" "Listing:Origin X,Origin Y,Width,Height" \
             "Plot:Origin X,Origin Y,Width,Height" "Chart:Origin X,Origin Y,Width,Height" \
             "Text Tags:Origin X,Origin Y"; do
  section="${place%%:*}"
  IFS=, read -r -a keys <<<"${place#*:}"
  for key in "${keys[@]}"; do
    value="$(e2e_ini_value "$section" "$key")"
    [[ "$value" =~ ^-?[0-9]+$ ]] || e2e_fail "$section: $key is '$value'"
  done
done
[ "$(e2e_ini_value "Main window" Width)" -gt 100 ] || e2e_fail "Main window: Width too small"
e2e_expect_ini Chart Channel=1
e2e_expect_ini Plot Channel=1
e2e_pass "Main window keys and the places of the four child windows written"
e2e_check_answering
