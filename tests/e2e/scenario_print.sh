#!/usr/bin/env bash
# File > Print on a PostScript printer that writes each job to a file: the message with no
# printer; the listing page by page as the printer's metrics say, in two formats; the plot
# in its three area modes, each dot where the scale puts it and nothing else; Cancel in
# AbortBox; the time of a full store's listing and plot.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
CHECK="$VIEWS print"
PRINTER="$BUILD_ROOT/tests/e2e/file_printer.exe"
JOB="$ART/job.ps"

$VIEWS make "$DAT"

# Every job ends as the file the printer's port writes; wait until it is
# whole (the document's trailer) and keep it under NAME.ps.
take_job() {
  e2e_until "${2:-60}" '[ -s "$JOB" ] && tail -c 200 "$JOB" | grep -q "%%EOF"' || e2e_fail "no print job $1 in $JOB"
  mv "$JOB" "$ART/$1.ps"
}

wine "$PRINTER" remove "VELDOR Test" >/dev/null 2>&1 || true
e2e_start_on_survey "$DAT"

LISTING="VELDOR - Print Listing"
PLOT="VELDOR - Print Plot"
# print_menu l|p [KEYS...]: File > Print > Listing or Plot; its dialog
# opens, and KEYS are pressed (from its OK button).
print_menu() {
  local -A title=([l]="$LISTING" [p]="$PLOT") status=([l]="Print listing" [p]="Print plot")
  e2e_open_dialog "" "alt+f Up Up Right $1" "${title[$1]}" "${status[$1]}"
  [ $# -lt 2 ] || e2e_key "${@:2}"
}

e2e_key alt+f Up Up Right l
e2e_box "Sorry, could not retrieve default printer information*"
e2e_step Return "nowindow=VELDOR; enabled=1"
e2e_pass "no printer: \"Sorry, could not retrieve default printer information\" and nothing else"

wine "$PRINTER" add "VELDOR Test" "$(e2e_winpath "$E2E_ROOT_DIR/tests/e2e/printer/veldor_test.ppd")" "$JOB" ||
  e2e_fail "the test printer could not be installed"
wine "$PRINTER" metrics | tr -d "\r" >"$ART/metrics.txt" || e2e_fail "no metrics of the test printer"
cat "$ART/metrics.txt"

listing() {
  gs -q -dNOPAUSE -dBATCH -sDEVICE=txtwrite -sOutputFile="$ART/$1-%03d.txt" "$ART/$1.ps"
  $CHECK listing "$DAT" "$ART/metrics.txt" "$ART/$1"-*.txt "${@:2}" || e2e_fail "the listing $1"
}
print_menu l
e2e_step "" "control=Edit,1901,VELDOR Test on |cat > $JOB"
e2e_shot print_listing_box 1
e2e_key Return
take_job listing_default
listing listing_default

# From OK backwards: "Raw"; Stats, Files, Date off; "+/-"; "Deg Min Sec".
print_menu l shift+Tab Down Down shift+Tab space shift+Tab space shift+Tab space shift+Tab Down shift+Tab Down Down
e2e_shot print_listing_changed 1
e2e_key Return
take_job listing_bare
listing listing_bare --format DMS_PM_RAW --header 0
e2e_expect_ini "Print Listing" "Lat/Long=3" "Sign=2" "Decimal places=-1" "Date=0" "Files=0" "Stats=0"
e2e_pass "the listing, header and records line by line, pages as the page height puts them; again in Deg Min Sec, +/-, Raw with Date, Files and Stats off, the six keys written"

# plot NAME [MODE]: the confirmation of the area answered Yes, and the job
# taken; with MODE, rendered to pixels and checked.
plot() {
  e2e_box "Map area:*"
  e2e_key Return
  take_job "$1" 120
  [ -n "${2:-}" ] || return 0
  gs -q -dNOPAUSE -dBATCH -sDEVICE=ppmraw -r127 -sOutputFile="$ART/$1.ppm" "$ART/$1.ps"
  $CHECK plot "$DAT" "$ART/metrics.txt" "$ART/$1.ppm" --mode "$2" --probe "$ART/plot_state.probe" || e2e_fail "the plot, $2"
  convert "$ART/$1.ppm" "$ART/$1.png"
  rm -f "$ART/$1.ppm"
}
e2e_probe wait -t 0 >"$ART/plot_state.probe"

print_menu p
e2e_step "" "control=Static,1931,Printable area: $(sed -n 's/horzsize=//p' "$ART/metrics.txt") x $(sed -n 's/vertsize=//p' "$ART/metrics.txt") mm"
e2e_shot print_plot_box 1
e2e_key Return
plot plot_entire entire

print_menu p shift+Tab shift+Tab shift+Tab shift+Tab Down Return
plot plot_displayed displayed
e2e_pass "Fit entire area to page, Fit displayed area to page: every dot where the scale puts it, in its colour, nothing else"

# specify TL_LAT TL_LONG BR_LAT BR_LONG TL_X TL_Y BR_X BR_Y: the eight fields typed.
specify() {
  print_menu p shift+Tab shift+Tab shift+Tab shift+Tab Down Down Tab Tab Tab
  for field in "$@"; do e2e_keys Tab ":$field"; done
  e2e_key Return
}
specify "51 30 20 N" "-1" "51.5 N" "0 59.5 W" 20 30 210 250
e2e_refused "$PLOT" "The defined print area does not fit on the page*"
e2e_step Escape "nowindow=$PLOT; enabled=1"
e2e_expect_ini "Plot scale" "TL Lat="

specify "51 30 20 N" "-1" "51.5 N" "0 59.5 W" 20 30 180 250
e2e_box "Map area:*"
e2e_step n "nowindow=VELDOR; window=$PLOT"
e2e_expect_ini "Plot scale" "TL Lat="
e2e_key Return
plot plot_specify specify
e2e_expect_ini "Plot scale" "TL Lat=51 30 20 N" "TL Long=-1" "BR Lat=51.5 N" "BR Long=0 59.5 W" "TL X=20" "TL Y=30" \
  "BR X=180" "BR Y=250"
e2e_pass "Specify area: coordinates typed as Deg Min Sec, signed Deg, Deg and Deg Min; an area off the page refused; No keeps the dialog"

FULL="$ART/full.DAT"
$VIEWS make "$FULL" 16000
e2e_open_survey "$FULL"
t0=$(date +%s.%N)
print_menu l Return
take_job listing_full 300
t1=$(date +%s.%N)
print_menu p Return
plot plot_full
t2=$(date +%s.%N)
python3 -c "import sys; a, b, c, n = map(float, sys.argv[1:]); print(f'print listing 16000 records: {int(n)} pages in {b - a:.1f} s'); print(f'print plot 16000 records: {c - b:.1f} s')" \
  "$t0" "$t1" "$t2" "$(grep -c '^%%Page:' "$ART/listing_full.ps")" | tee "$ART/bench.txt"

print_menu l Return
e2e_expect "no AbortBox" -t 20 "window=VELDOR - Printing"
e2e_shot abort_box 1
e2e_key Escape
e2e_expect "the job did not stop on Cancel" -t 30 "nowindow=VELDOR - Printing" enabled=1
sleep 2
if [ -s "$JOB" ] && tail -c 200 "$JOB" | grep -q '%%EOF'; then
  [ "$(grep -c '^%%Page:' "$JOB")" -lt "$(grep -c '^%%Page:' "$ART/listing_full.ps")" ] || e2e_fail "the cancelled job printed every page"
fi
e2e_step ctrl+o "window=Open Data File"
e2e_key Escape
e2e_pass "Cancel in AbortBox stops the job and the program goes on"
