#!/usr/bin/env bash
# The Listing, Plot and Chart draw a survey the test made (views_survey.py): the pixels of
# each, after the Plot's buttons and the Chart's Ch2; Show Location's cross hair and chart
# mark; End, a right click and Delete Record, then Save As: exactly that record gone; Home
# back to record 1; with "Max plot time" 1 the Plot suspended while recording, drawn after Stop.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

SAVED="$ART/deleted.DAT"
$VIEWS make "$DAT"

e2e_start_on_survey "$DAT"
check() { e2e_check pixels.txt "$VIEWS_PY" "$1" "$ART/$2.png" "$ART/$2.probe" "${@:3}"; }

e2e_view_shot opened
check listing opened "$DAT"
check plot opened "$DAT" --channel 0
check chart opened "$DAT" --channel 0

# plot_button N SHOT ARGS...: the Plot's button N (29 pixels apart), a
# screenshot, and the Plot checked with ARGS.
plot_button() {
  e2e_click Veldor_Plot $((4 + 29 * $1 + 12)) 16
  e2e_view_shot "$2"
  check plot "$2" "$DAT" "${@:3}"
}
plot_button 4 plot_all --channel 4
plot_button 5 plot_best --channel 5
plot_button 6 plot_zoom_in --channel 5 --zoom i
plot_button 7 plot_zoom_out --channel 5 --zoom io
e2e_click Veldor_Plot $((4 + 29 * 8 + 12)) 16
e2e_click Veldor_Chart $((33 + 12)) 16
e2e_view_shot chart_ch2
check plot chart_ch2 "$DAT" --channel 5
check chart chart_ch2 "$DAT" --channel 1
e2e_pass "Listing, Plot and Chart draw the survey; then Plot: All, Best, Zoom In, Zoom Out, Zoom Auto; Chart: Ch2"

# row_menu SHOT ROW TOP KEY: a right click on table row ROW (the rows measured
# on SHOT; TOP the top row, or end), and KEY in the Listing's popup menu;
# $record is the record the row shows.
row_menu() {
  read -r y x record <<<"$($VIEWS listing-row "$ART/$1.probe" "$ART/$1.png" "$2" "$3")"
  e2e_mark
  xdotool mousemove "$x" "$y" click 3
  e2e_expect_status "Listing popup menu"
  e2e_step "$4"
}

row_menu chart_ch2 1 0 l
[ "$record" = 1 ] || e2e_fail "row 1 shows record $record"
e2e_view_shot location
check plot location "$DAT" --channel 5 --cross 1
check chart location "$DAT" --channel 1 --mark 1
e2e_pass "Show Location: cross hair and chart mark on record 2"

e2e_click Veldor_Listing 20 200
e2e_key Next End
sleep 1
row_menu location 2 end d
e2e_expect_status "Delete record"
e2e_view_shot deleted
e2e_save_as "$SAVED"
e2e_check pixels.txt "$VIEWS_PY" deleted "$DAT" "$SAVED" "$record"
e2e_pass "End, right click, Delete Record: record $((record + 1)) gone from the saved file, tags moved"
e2e_key Home
sleep 1
row_menu deleted 0 0 l
e2e_view_shot home
check plot home "$SAVED" --channel 5 --cross 0
e2e_pass "Home: the first row shows record 1 again"
e2e_quit

# A repaint must take longer than 1 ms whatever the machine: 15000 records
# in All with dots of 50 pixels.
$VIEWS make "$ART/big.DAT" 15000
e2e_setting General "Max plot time" 1 General "Record Interval Seconds" 1 Plot Channel 5 Plot "Dot size" 50
e2e_start_linked --period-ms 500
e2e_open_survey "$ART/big.DAT"
e2e_mark
e2e_key F1
e2e_expect_status "Plot window display suspended by program" 30
e2e_wait_samples 2 10 || true
e2e_view_shot suspended
check suspended suspended 1
e2e_record F2
e2e_view_shot resumed
check suspended resumed 0
e2e_pass "Max plot time 1: suspended while recording, dots back after Stop"
