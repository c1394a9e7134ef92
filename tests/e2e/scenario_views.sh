#!/usr/bin/env bash
# The Listing, Plot and Chart draw a survey the test made (views_survey.py:
# 300 records on a grid, four colour bands, every GPS state, five tags),
# opened through File > Open with no controller:
#   - each window's screenshot holds the pixels the file says it must: the
#     dot colour where a record falls after Zoom Auto, in channel 1, All and
#     Best, after Zoom In and Zoom Out; the header band, the live-row band, a row's GPS
#     colour and a tag star in the Listing; the spike of each reading in the
#     Chart, for channel 1 and, after its button, channel 2;
#   - Show Location from the Listing's popup puts the cross hair on that
#     record in the Plot and the mark on its bin in the Chart;
#   - Page Down and End through the forwarded keys, a right click on a row
#     and Delete Record, then Save As: the file has exactly that record gone
#     and the tags behind it moved; Home brings record 1 back to the top;
# and, recording from the simulator with "Max plot time" 1, the Plot stops
# drawing with its status line and text, and draws again after Record > Stop.
set -euo pipefail
E2E_SCENARIO=views
# shellcheck source=lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
VIEWS="python3 $E2E_ROOT_DIR/tests/e2e/views_survey.py"

DAT="$ART/views.DAT"
SAVED="$ART/deleted.DAT"
$VIEWS make "$DAT"

e2e_fresh_settings
e2e_view_layout
e2e_start_on_survey "$DAT"
e2e_wait_status "Data read from file 'views.DAT'" 5 || e2e_fail "no \"Data read from file 'views.DAT'\""

check() { e2e_check pixels.txt "$E2E_ROOT_DIR/tests/e2e/views_survey.py" "$@"; }

e2e_view_shot opened
check listing "$ART/opened.png" "$ART/opened.probe" "$DAT"
check plot "$ART/opened.png" "$ART/opened.probe" "$DAT" --channel 0
check chart "$ART/opened.png" "$ART/opened.probe" "$DAT" --channel 0
e2e_pass "Listing, Plot (channel 1) and Chart (channel 1) draw the survey"

# ---- Plot buttons: All, Best, Zoom In, Zoom Auto; the Chart's Ch2 ------------------------------
e2e_click Veldor_Plot $((4 + 29 * 4 + 12)) 16
e2e_view_shot plot_all
check plot "$ART/plot_all.png" "$ART/plot_all.probe" "$DAT" --channel 4
e2e_click Veldor_Plot $((4 + 29 * 5 + 12)) 16
e2e_view_shot plot_best
check plot "$ART/plot_best.png" "$ART/plot_best.probe" "$DAT" --channel 5
e2e_click Veldor_Plot $((4 + 29 * 6 + 12)) 16
e2e_view_shot plot_zoom_in
check plot "$ART/plot_zoom_in.png" "$ART/plot_zoom_in.probe" "$DAT" --channel 5 --zoom i
e2e_click Veldor_Plot $((4 + 29 * 7 + 12)) 16
e2e_view_shot plot_zoom_out
check plot "$ART/plot_zoom_out.png" "$ART/plot_zoom_out.probe" "$DAT" --channel 5 --zoom io
e2e_click Veldor_Plot $((4 + 29 * 8 + 12)) 16
e2e_click Veldor_Chart $((33 + 12)) 16
e2e_view_shot chart_ch2
check plot "$ART/chart_ch2.png" "$ART/chart_ch2.probe" "$DAT" --channel 5
check chart "$ART/chart_ch2.png" "$ART/chart_ch2.probe" "$DAT" --channel 1
e2e_pass "Plot: All, Best, Zoom In, Zoom Out, Zoom Auto; Chart: Ch2"

# ---- Show Location on the second record ------------------------------------------------------------
read -r y x record <<<"$($VIEWS listing-row "$ART/chart_ch2.probe" "$ART/chart_ch2.png" 1 0)"
[ "$record" = 1 ] || e2e_fail "row 1 shows record $record"
xdotool mousemove "$x" "$y" click 3
e2e_wait_status "Listing popup menu" 5 || e2e_fail "no Listing popup menu"
e2e_key l
e2e_view_shot location
check plot "$ART/location.png" "$ART/location.probe" "$DAT" --channel 5 --cross 1
check chart "$ART/location.png" "$ART/location.probe" "$DAT" --channel 1 --mark 1
e2e_pass "Show Location: cross hair and chart mark on record 2"

# ---- Keys, right click, Delete Record, Save As --------------------------------------------------------
e2e_click Veldor_Listing 20 200
e2e_key Next End
sleep 1
read -r y x record <<<"$($VIEWS listing-row "$ART/location.probe" "$ART/location.png" 2 end)"
xdotool mousemove "$x" "$y" click 3
e2e_wait_status "Listing popup menu" 5 || e2e_fail "no Listing popup menu after End"
e2e_mark
e2e_key d
e2e_wait_status "Delete record" 5 || e2e_fail "Delete Record said nothing"
e2e_view_shot deleted
e2e_save_as "$SAVED"
$VIEWS deleted "$DAT" "$SAVED" "$record" >>"$ART/pixels.txt" 2>&1 ||
  e2e_fail "the saved file is not the survey less record $((record + 1)): $(tail -1 "$ART/pixels.txt")"
e2e_pass "End, right click, Delete Record: record $((record + 1)) gone from the saved file, tags moved"
# Home brings the first record back to the first row: Show Location on that
# row puts the cross hair on record 1.
e2e_key Home
sleep 1
read -r y x record <<<"$($VIEWS listing-row "$ART/deleted.probe" "$ART/deleted.png" 0 0)"
e2e_mark
xdotool mousemove "$x" "$y" click 3
e2e_wait_status "Listing popup menu" 5 || e2e_fail "no Listing popup menu after Home"
e2e_key l
e2e_view_shot home
check plot "$ART/home.png" "$ART/home.probe" "$SAVED" --channel 5 --cross 0
e2e_pass "Home: the first row shows record 1 again"
e2e_quit

# ---- Max plot time 1 while recording --------------------------------------------------------------
# A repaint must take longer than 1 ms whatever the machine: 15000 records
# in All with dots of 50 pixels.
$VIEWS make "$ART/big.DAT" 15000
e2e_setting General "Max plot time" 1
e2e_setting General "Record Interval Seconds" 1
e2e_setting Plot Channel 5
e2e_setting Plot "Dot size" 50
e2e_start_linked --period-ms 500
e2e_open_survey "$ART/big.DAT"
e2e_mark
e2e_key F1
e2e_wait_status "Plot window display suspended by program" 30 ||
  e2e_fail "the Plot was not suspended with Max plot time 1"
e2e_wait_samples 2 10 || true
e2e_view_shot suspended
$VIEWS suspended "$ART/suspended.png" "$ART/suspended.probe" 1 >>"$ART/pixels.txt" 2>&1 ||
  e2e_fail "no suspension text in the Plot: $(tail -1 "$ART/pixels.txt")"
e2e_key F2
e2e_expect "F2 did not stop recording" -t 10 pane1=Idle
e2e_view_shot resumed
$VIEWS suspended "$ART/resumed.png" "$ART/resumed.probe" 0 >>"$ART/pixels.txt" 2>&1 ||
  e2e_fail "the dots did not come back after Record > Stop: $(tail -1 "$ART/pixels.txt")"
e2e_pass "Max plot time 1: suspended while recording, dots back after Stop"
e2e_check_answering
