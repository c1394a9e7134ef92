#!/usr/bin/env bash
# File > Print > Listing and Plot on a PostScript printer of Wine's driver
# whose port writes each job to a file (printer/file_printer.cpp):
#   - with no printer: "Sorry, could not retrieve default printer information";
#   - the listing's text, extracted by Ghostscript, line by line as the survey
#     file and the printer's metrics say, pages included, with the default
#     header and with "Date", "Files", "Stats" off in another format;
#   - the plot in its three area modes, rendered to pixels: each record's dot
#     where the scale arithmetic puts it, in its band colour, nothing else;
#     typed coordinates in several forms, and the refusals of bad ones;
#   - Cancel in AbortBox during a full store's listing: AbortDoc, the program
#     goes on; and the time of a full store's listing and plot.
set -euo pipefail
E2E_SCENARIO=print
# shellcheck source=lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
VIEWS="python3 $E2E_ROOT_DIR/tests/e2e/views_survey.py"
CHECK="python3 $E2E_ROOT_DIR/tests/e2e/print_check.py"
PRINTER="$BUILD_ROOT/tests/e2e/file_printer.exe"
JOB="$ART/job.ps"

DAT="$ART/print.DAT"
$VIEWS make "$DAT"

# Every job ends as the file the printer's port writes; wait until it is
# whole (the document's trailer) and keep it under NAME.ps.
take_job() {
  local deadline=$((SECONDS + ${2:-60}))
  until [ -s "$JOB" ] && tail -c 200 "$JOB" | grep -q '%%EOF'; do
    [ $SECONDS -lt $deadline ] || e2e_fail "no print job $1 in $JOB"
    sleep 0.2
  done
  mv "$JOB" "$ART/$1.ps"
}
print_menu() { e2e_mark; e2e_key alt+f Up Up Right "$1"; }

wine "$PRINTER" remove "VELDOR Test" >/dev/null 2>&1 || true
e2e_fresh_settings
e2e_view_layout
e2e_start_program
e2e_close_signon
e2e_focus
e2e_open_survey "$DAT"

# ---- No printer -------------------------------------------------------------------------------
print_menu l
e2e_expect "no message without a printer" -t 10 window=VELDOR
grep -q -F "control=Static|65535|Sorry, could not retrieve default printer information" "$ART/last_probe.txt" ||
  e2e_fail "the box says: $(grep '^control=Static' "$ART/last_probe.txt" | tr '\n' ' ')"
e2e_key Return
e2e_expect "something more than the message without a printer" -t 10 nowindow=VELDOR enabled=1
e2e_pass "no printer: \"Sorry, could not retrieve default printer information\" and nothing else"

wine "$PRINTER" add "VELDOR Test" "$(e2e_winpath "$E2E_ROOT_DIR/tests/e2e/printer/veldor_test.ppd")" "$JOB" ||
  e2e_fail "the test printer could not be installed"
wine "$PRINTER" metrics | tr -d "\r" >"$ART/metrics.txt" || e2e_fail "no metrics of the test printer"
cat "$ART/metrics.txt"

# ---- Listing: the default header and format, then another format without header -------------
print_menu l
e2e_expect "no dialog \"VELDOR - Print Listing\"" -t 10 "window=VELDOR - Print Listing"
grep -q -F "control=Edit|1901|VELDOR Test on |cat > $JOB" "$ART/last_probe.txt" ||
  e2e_fail "the printer field says: $(grep '^control=Edit|1901' "$ART/last_probe.txt")"
sleep 1
e2e_shot print_listing_box
e2e_key Return
e2e_wait_status "Print listing" 5 || e2e_fail "no status line \"Print listing\""
take_job listing_default
pages() { gs -q -dNOPAUSE -dBATCH -sDEVICE=txtwrite -sOutputFile="$ART/$1-%03d.txt" "$ART/$1.ps"; }
pages listing_default
$CHECK listing "$DAT" "$ART/metrics.txt" "$ART"/listing_default-*.txt || e2e_fail "the default listing"
e2e_pass "the listing: header and records line by line, pages as the page height puts them"

# From OK backwards: "Raw"; Stats, Files, Date off; "+/-"; "Deg Min Sec".
print_menu l
e2e_expect "no dialog \"VELDOR - Print Listing\"" -t 10 "window=VELDOR - Print Listing"
e2e_key shift+Tab Down Down shift+Tab space shift+Tab space shift+Tab space shift+Tab Down shift+Tab Down Down
sleep 1
e2e_shot print_listing_changed
e2e_key Return
take_job listing_bare
pages listing_bare
$CHECK listing "$DAT" "$ART/metrics.txt" "$ART"/listing_bare-*.txt --format DMS_PM_RAW --header 0 ||
  e2e_fail "the listing without header"
for kv in "Lat/Long=3" "Sign=2" "Decimal places=-1" "Date=0" "Files=0" "Stats=0"; do
  [ "$(e2e_ini_value "Print Listing" "${kv%%=*}")" = "${kv#*=}" ] || e2e_fail "[Print Listing] ${kv%%=*} is not ${kv#*=}"
done
e2e_pass "the listing in Deg Min Sec, +/-, Raw with Date, Files and Stats off; the six keys written"

# ---- Plot: the three ways of choosing the area ------------------------------------------------
# plot_dialog KEYS: opens Print Plot and presses KEYS from its OK button.
plot_dialog() {
  print_menu p
  e2e_expect "no dialog \"VELDOR - Print Plot\"" -t 10 "window=VELDOR - Print Plot"
  if [ $# -gt 0 ]; then e2e_key "$@"; fi
}
# confirm_area: the confirmation of the area is asked and answered Yes.
confirm_area() {
  e2e_expect "no confirmation of the area" -t 10 window=VELDOR
  grep -q -F "control=Static|65535|Map area:" "$ART/last_probe.txt" || e2e_fail "no \"Map area:\" to confirm"
  e2e_key Return
}
render() {
  gs -q -dNOPAUSE -dBATCH -sDEVICE=ppmraw -r127 -sOutputFile="$ART/$1.ppm" "$ART/$1.ps"
  $CHECK plot "$DAT" "$ART/metrics.txt" "$ART/$1.ppm" --mode "$2" --probe "$ART/plot_state.probe" || e2e_fail "the plot, $2"
  convert "$ART/$1.ppm" "$ART/$1.png"
  rm -f "$ART/$1.ppm"
}
e2e_probe state >"$ART/plot_state.probe"

plot_dialog
grep -q -F "control=Static|1931|Printable area: $(sed -n 's/horzsize=//p' "$ART/metrics.txt") x $(sed -n 's/vertsize=//p' "$ART/metrics.txt") mm" \
  "$ART/last_probe.txt" || e2e_fail "the printable area says: $(grep '^control=Static|1931' "$ART/last_probe.txt")"
sleep 1
e2e_shot print_plot_box
e2e_key Return
confirm_area
take_job plot_entire
render plot_entire entire
e2e_pass "Fit entire area to page: every dot where the scale puts it, in its colour, nothing else"

plot_dialog shift+Tab shift+Tab shift+Tab shift+Tab Down Return
confirm_area
take_job plot_displayed
render plot_displayed displayed
e2e_pass "Fit displayed area to page"

# specify TL_LAT TL_LONG BR_LAT BR_LONG TL_X TL_Y BR_X BR_Y: the eight fields typed.
specify() {
  plot_dialog shift+Tab shift+Tab shift+Tab shift+Tab Down Down Tab Tab Tab
  for field in "$@"; do e2e_key Tab; xdotool type --delay 20 -- "$field"; done
  e2e_key Return
}
refused() {
  e2e_expect "no message \"$1\"" -t 10 window=VELDOR
  grep -q -F "control=Static|65535|$1" "$ART/last_probe.txt" || e2e_fail "the box says: $(grep '^control=Static' "$ART/last_probe.txt" | tr '\n' ' ')"
  e2e_key Return
  e2e_expect "the dialog did not stay open after \"$1\"" -t 10 nowindow=VELDOR "window=VELDOR - Print Plot"
  e2e_key Escape
  e2e_expect "the dialog did not close" -t 10 "nowindow=VELDOR - Print Plot" enabled=1
}
specify "51.5 N" "-1" "51 30 20 N" "0 59.5 W" 20 30 180 250
refused "Co-ordinates are invalid"
specify "51 30 20 N" "-1" "51.5 N" "0 59.5 W" 20 30 210 250
refused "The defined print area does not fit on the page"
[ -z "$(e2e_ini_value "Plot scale" "TL Lat")" ] || e2e_fail "a refused area was written"

specify "51 30 20 N" "-1" "51.5 N" "0 59.5 W" 20 30 180 250
e2e_expect "no confirmation of the area" -t 10 window=VELDOR
e2e_key n
e2e_expect "the dialog did not stay open after No" -t 10 nowindow=VELDOR "window=VELDOR - Print Plot"
[ -z "$(e2e_ini_value "Plot scale" "TL Lat")" ] || e2e_fail "the area was written after No"
e2e_key Return
confirm_area
take_job plot_specify
render plot_specify specify
for kv in "TL Lat=51 30 20 N" "TL Long=-1" "BR Lat=51.5 N" "BR Long=0 59.5 W" "TL X=20" "TL Y=30" "BR X=180" "BR Y=250"; do
  [ "$(e2e_ini_value "Plot scale" "${kv%%=*}")" = "${kv#*=}" ] || e2e_fail "[Plot scale] ${kv%%=*} is not ${kv#*=}"
done
e2e_pass "Specify area: coordinates typed as Deg Min Sec, signed Deg, Deg and Deg Min; bad ones refused with their messages; No keeps the dialog"

# ---- A full store: the time of each job, and Cancel ---------------------------------------------
FULL="$ART/full.DAT"
$VIEWS make "$FULL" 16000
e2e_open_survey "$FULL"
t0=$(date +%s.%N)
print_menu l
e2e_expect "no dialog \"VELDOR - Print Listing\"" -t 10 "window=VELDOR - Print Listing"
e2e_key Return
take_job listing_full 300
t1=$(date +%s.%N)
pages_full=$(gs -q -dNODISPLAY -dNOSAFER -c "($ART/listing_full.ps) (r) file runpdfbegin pdfpagecount = quit" 2>/dev/null || grep -c '^%%Page:' "$ART/listing_full.ps")
plot_dialog Return
confirm_area
take_job plot_full 120
t2=$(date +%s.%N)
python3 -c "import sys; a, b, c, n = map(float, sys.argv[1:]); print(f'print listing 16000 records: {int(n)} pages in {b - a:.1f} s'); print(f'print plot 16000 records: {c - b:.1f} s')" \
  "$t0" "$t1" "$t2" "$(grep -c '^%%Page:' "$ART/listing_full.ps")" | tee "$ART/bench.txt"

print_menu l
e2e_expect "no dialog \"VELDOR - Print Listing\"" -t 10 "window=VELDOR - Print Listing"
e2e_key Return
e2e_expect "no AbortBox" -t 20 "window=VELDOR - Printing"
sleep 1
e2e_shot abort_box
e2e_key Escape
e2e_expect "the job did not stop on Cancel" -t 30 "nowindow=VELDOR - Printing" enabled=1
sleep 2
if [ -s "$JOB" ] && tail -c 200 "$JOB" | grep -q '%%EOF'; then
  [ "$(grep -c '^%%Page:' "$JOB")" -lt "$(grep -c '^%%Page:' "$ART/listing_full.ps")" ] || e2e_fail "the cancelled job printed every page"
fi
e2e_key ctrl+o
e2e_expect "the program does not go on after Cancel" -t 15 window="Open Data File"
e2e_key Escape
e2e_pass "Cancel in AbortBox stops the job and the program goes on"
e2e_check_answering
