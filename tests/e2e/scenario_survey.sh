#!/usr/bin/env bash
# A survey recorded at one record a second from a sample every 2 s: F1 ("MC 1", "MI 1"), F2; Save
# As writes exactly the samples sent; File > Close empties the store; a second run opens the file,
# resumes with autosave on the first tick, saves at Stop, and Yes at exit saves an F3 reading.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

records() { echo $((($(stat -c %s "$DAT") - 1223) / 18)); }

e2e_setting General "Record Interval Seconds" 1
since=$(date +%s)
e2e_start_linked --period-ms 2000

e2e_wire_mark
span1_from=$(($(e2e_samples_sent) + 1))
e2e_record F1
e2e_expect_wire -p "F1" "MC 1" "MI 1"
e2e_expect "no eight records within 30 seconds" -t 30 "pane2=0.05 %"
e2e_shot recording
e2e_record F2 "pane0=Recording stopped"
e2e_wait_log "RX MI 0" 5 || e2e_fail "no MI 0 at the stop"
span1="$span1_from:$(e2e_samples_sent)"

e2e_save_as "$DAT"
until_=$(($(date +%s) + 1))
e2e_shot saved

# The gauge is written on the tick before the tick's record: by now it
# shows the last record.
shown="$(python3 "$CHECK_DAT" --gauge "$DAT")"
e2e_expect "the store gauge does not show the records of the file ($shown)" -t 5 "pane2=$shown"
e2e_check_dat "$DAT" --min-records 8 --span "$span1"
e2e_pass "recorded at interval 1, stopped, saved through the file dialog; the file holds the samples sent, in order, with sound flags and times"

e2e_menu alt+f c
e2e_expect "File > Close did not empty the store" -t 5 caption=VELDOR "pane0=File closed" "pane2=0 %"
e2e_quit
e2e_pass "File > Close: title \"VELDOR\", store empty; exit without a question"

cp "$DAT" "$ART/survey_first_run.DAT"
e2e_setting General "Autosave Enable" 1 General "Autosave Interval" 1
e2e_start_on_survey "$DAT"
e2e_expect "the store gauge does not show survey.DAT loaded" -t 5 "pane2=$shown"
e2e_shot opened

saved_before="$(stat -c %Y.%s "$DAT")"
span2_from=$(($(e2e_samples_sent) + 1))
e2e_record F1
e2e_until 10 '[ "$(stat -c %Y.%s "$DAT")" != "$saved_before" ]' || e2e_fail "no autosave after the start"
e2e_expect_status "Recording resumed"
e2e_wait_samples 3 20 || e2e_fail "the simulator stopped sending"
e2e_record F2
e2e_wait_log "RX MI 0" 5 || e2e_fail "no MI 0 at the stop"
span2="$span2_from:$(e2e_samples_sent)"
written="pane0=Data written to file 'survey.DAT'"
e2e_until 10 'gauge="$(python3 "$CHECK_DAT" --gauge "$DAT")" && e2e_wait -t 0 "pane2=$gauge" &&
              [ "$gauge" != "$shown" ] && e2e_wait -t 0 "$written"' ||
  e2e_fail "the stop did not save the records ($(grep "^pane2=" "$ART/last_probe.txt") shown, $gauge in the file)"
e2e_pass "File > Open showed survey.DAT loaded ($shown); autosave on the first tick and the save at Stop wrote it ($gauge)"

records_before="$(records)"
e2e_step F3 "pane0=Take single reading"
e2e_quit y
until_=$(($(date +%s) + 1))
[ "$(records)" -eq $((records_before + 1)) ] || e2e_fail "the save at exit wrote $(records) records, $((records_before + 1)) expected"
e2e_check_dat "$DAT" --min-records 12 --span "$span1" --span "$span2"
e2e_pass "the answer Yes at exit saved the reading taken with F3 ($(records) records)"
