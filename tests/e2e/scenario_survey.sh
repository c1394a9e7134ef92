#!/usr/bin/env bash
# A recorded survey, saved and opened again:
#   - "Record Interval Seconds" 1; F1 starts recording ("MC 1", "MI 1": the
#     controller steps the TZR4100 channel itself), a few seconds of
#     samples, F2 stops it ("MI 0");
#   - File > Save As through the file dialog writes the .DAT file; the title
#     bar and the status line name it; it holds exactly the positions and
#     readings the simulator sent, in order, with fix, live and channel
#     flags and times within the run;
#   - File > Close empties the store and the title; exit asks nothing;
#   - a second run opens the file through File > Open: status line, title
#     and store gauge show it loaded; with autosave on, F1 resumes recording
#     on the loaded data and saves on the first tick, F2 saves again; F3
#     takes a reading, and the exit's question answered Yes saves it.
# The simulator sends a sample every 2 seconds, so that at one record a
# second every sample is recorded at least once.
set -euo pipefail
E2E_SCENARIO=survey
# shellcheck source=lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

DAT="$ART/survey.DAT"
DAT_WIN="$(e2e_winpath "$DAT")"
[ -n "$DAT_WIN" ] || e2e_fail "no Windows path for $DAT"

e2e_fresh_settings
e2e_setting General "Record Interval Seconds" 1
since=$(date +%s)
e2e_start_linked --period-ms 2000

# ---- F1, eight records, F2 ---------------------------------------------------------------
before=$(e2e_received | wc -l)
span1_from=$(($(e2e_samples_sent) + 1))
e2e_key F1
e2e_expect "F1 did not start recording" -t 10 pane1=Recording
e2e_wait_received "$before" 2 5 || e2e_fail "F1 sent no frames"
after_start="$(e2e_received_after "$before" | sed -n '1,2p' | tr '\n' '|')"
[ "$after_start" = "MC 1|MI 1|" ] || e2e_fail "F1 sent: $after_start"
e2e_expect "no eight records within 30 seconds" -t 30 "pane2=0.05 %"
e2e_shot recording
e2e_key F2
e2e_expect "F2 did not stop recording" -t 10 pane1=Idle "pane0=Recording stopped"
e2e_wait_log "RX MI 0" 5 || e2e_fail "no MI 0 at the stop"
span1="$span1_from:$(e2e_samples_sent)"
e2e_pass "recorded at interval 1 and stopped"

# ---- File > Save As through the file dialog -----------------------------------------------
e2e_key alt+f
e2e_expect "the File menu did not open" -t 5 window=
e2e_key a
e2e_expect "no file dialog \"Save Data File...\"" -t 15 window="Save Data File..." \
  "pane0=Select filename for data file..."
e2e_shot save_dialog
e2e_type "$DAT_WIN"
e2e_key Return
e2e_expect "the file is not saved as survey.DAT" -t 20 nowindow="Save Data File..." \
  "caption=VELDOR [ survey.DAT ]" "pane0=Data written to file 'survey.DAT'"
until_=$(($(date +%s) + 1))
[ -f "$DAT" ] || e2e_fail "no $DAT"
e2e_shot saved
e2e_pass "saved through the file dialog: title and status line name survey.DAT"

# The gauge is written on the tick before the tick's record: by now it
# shows the last record.
shown="$(python3 "$CHECK_DAT" --gauge "$DAT")"
e2e_expect "the store gauge does not show the records of the file ($shown)" -t 5 "pane2=$shown"
python3 "$CHECK_DAT" "$DAT" --log "$SIM_LOG" --sent "$SENT" \
  --interval 1 --since "$since" --until "$until_" --min-records 8 --span "$span1" \
  >"$ART/check_dat.txt" 2>&1 || { cat "$ART/check_dat.txt"; e2e_fail "the data file is not what was recorded"; }
cat "$ART/check_dat.txt"
e2e_pass "the data file holds the samples sent, in order, with sound flags and times"

# ---- File > Close, then exit: nothing to ask, "OP 0" -------------------------------------------
e2e_key alt+f
e2e_expect "the File menu did not open" -t 5 window=
e2e_key c
e2e_expect "File > Close did not empty the store" -t 5 caption=VELDOR "pane0=File closed" "pane2=0 %"
e2e_pass "File > Close: title \"VELDOR\", store empty"
e2e_key alt+f
e2e_expect "the File menu did not open" -t 5 window=
e2e_key x
e2e_wait_exit 15
grep -q "RX OP 0" "$SIM_LOG" || e2e_fail "no OP 0 at exit"
e2e_pass "exit without a question"
e2e_check_answering

# ---- A second run: File > Open, autosave, and the save at exit ------------------------------
cp "$DAT" "$ART/survey_first_run.DAT"
e2e_setting General "Autosave Enable" 1
e2e_setting General "Autosave Interval" 1
e2e_start_program
e2e_close_signon
e2e_focus
e2e_key ctrl+o
e2e_expect "no file dialog \"Open Data File\"" -t 15 window="Open Data File" \
  "pane0=Select data file to open..."
e2e_shot open_dialog
e2e_type "$DAT_WIN"
e2e_key Return
e2e_expect "the file is not shown loaded" -t 20 nowindow="Open Data File" \
  "caption=VELDOR [ survey.DAT ]" "pane2=$shown"
# The Plot's auto zoom after the load writes its own line at once.
e2e_wait_status "Data read from file 'survey.DAT'" 5 || e2e_fail "no \"Data read from file 'survey.DAT'\""
e2e_shot opened
e2e_pass "File > Open: title, status line and store gauge ($shown) show survey.DAT loaded"

# Recording resumes on the loaded data; autosave writes the file on the
# first tick, and Stop saves it again.
saved_before="$(stat -c %Y.%s "$DAT")"
span2_from=$(($(e2e_samples_sent) + 1))
e2e_key F1
e2e_expect "F1 did not resume recording" -t 10 pane1=Recording
deadline=$((SECONDS + 10))
until [ "$(stat -c %Y.%s "$DAT")" != "$saved_before" ]; do
  [ $SECONDS -lt $deadline ] || e2e_fail "no autosave after the start"
  sleep 0.1
done
e2e_wait_status "Recording resumed" 5 || e2e_fail "no \"Recording resumed\" status line"
e2e_wait_samples 3 20 || e2e_fail "the simulator stopped sending"
e2e_key F2
e2e_expect "F2 did not stop recording" -t 10 pane1=Idle
e2e_wait_log "RX MI 0" 5 || e2e_fail "no MI 0 at the stop"
span2="$span2_from:$(e2e_samples_sent)"
# Stop saves: the file ends up with every record the gauge counts.
deadline=$((SECONDS + 10))
until gauge="$(python3 "$CHECK_DAT" --gauge "$DAT")" && e2e_wait -t 0 "pane2=$gauge" &&
      [ "$gauge" != "$shown" ] && e2e_wait -t 0 "pane0=Data written to file 'survey.DAT'"; do
  [ $SECONDS -lt $deadline ] || e2e_fail "the stop did not save the records ($(e2e_last pane2) shown, $gauge in the file)"
  sleep 0.3
done
e2e_pass "autosave on the first tick and the save at Stop wrote survey.DAT ($gauge)"

# One more reading changes the data; the exit asks, and Yes saves them.
records_before="$(python3 -c 'import os,sys; print((os.path.getsize(sys.argv[1]) - 1223) // 18)' "$DAT")"
e2e_key F3
e2e_expect "F3 took no reading" -t 5 "pane0=Take single reading"
e2e_key alt+f
e2e_expect "the File menu did not open" -t 5 window=
e2e_key x
e2e_expect "no question to save the changed data" -t 10 window=VELDOR
grep -q -F 'Current data has changed\nSave data ?' "$ART/last_probe.txt" ||
  e2e_fail "the question is not \"Current data has changed\\nSave data ?\""
e2e_shot exit_question
e2e_key y
e2e_wait_exit 15
records_after="$(python3 -c 'import os,sys; print((os.path.getsize(sys.argv[1]) - 1223) // 18)' "$DAT")"
[ "$records_after" -eq $((records_before + 1)) ] ||
  e2e_fail "the save at exit wrote $records_after records, $((records_before + 1)) expected"
until_=$(($(date +%s) + 1))
python3 "$CHECK_DAT" "$DAT" --log "$SIM_LOG" --sent "$SENT" \
  --interval 1 --since "$since" --until "$until_" --min-records 12 --span "$span1" --span "$span2" \
  >"$ART/check_dat_final.txt" 2>&1 || { cat "$ART/check_dat_final.txt"; e2e_fail "the data file is not what was recorded"; }
cat "$ART/check_dat_final.txt"
e2e_pass "the answer Yes at exit saved the reading taken with F3 ($records_after records)"
e2e_check_answering
