#!/usr/bin/env bash
# Record > Filter and File > Create Listing File on a survey of 300 records, no controller:
# "Nothing to do" and Cancel write nothing; after a filter by reading and one by position,
# Save As writes exactly the records left with their tags; an empty file name refused; two
# formats, one through Select, each file line by line; an existing name asks first.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

CHECK="$ART/records_check.py"
cat >"$CHECK" <<'PY'
"""filtered ORIG SAVED reading|position: SAVED is ORIG less what the filters
up to the one named remove; listing DAT TXT LATLONG SIGN DECIMALS SEPARATOR:
TXT is the listing text file of DAT. Computed from the files alone."""
import re
import sys
import time

from views_survey import fact
from veldor_dat import f32, position, read, reading, value

REMOVES = {"reading": lambda r: value(r[2][0]) < f32(50.2),
           "position": lambda r: (r[0] & 0x14) != 0x14 or r[3] > 185414000 or r[4] < -3594000}


def filtered(orig, saved, last):
    survey = read(orig)
    rows, tags = survey.records, survey.tags
    for name in ["reading", "position"][: 1 + (last == "position")]:
        index = {i: n for n, i in enumerate(i for i, r in enumerate(rows) if not REMOVES[name](r))}
        rows = [r for i, r in enumerate(rows) if i in index]
        tags = [(index[r], t) for r, t in tags if r in index]
    got = read(saved)
    fact(0 < len(rows) < 300 and tags, f"{len(rows)} records and {len(tags)} tags must remain")
    fact(got.records == rows, f"{len(got.records)} records saved, {len(rows)} expected")
    fact(got.tags == tags, f"tags {got.tags}, expected {tags}")


def listing(dat, txt, latlong, sign, decimals, separator):
    survey, sep = read(dat), " \t,"[int(separator) - 1]
    latlong, sign, decimals = int(latlong), int(sign), int(decimals)
    want = ["VELDOR -Listing text file", "", "Created from " + dat.replace("\\", "/").rsplit("/", 1)[-1]]
    for i, (flags, acc, ch, lat, lon, t) in enumerate(survey.records):
        line = time.strftime(f"%-d/%-m/%Y{sep}%H:%M:%S{sep}", time.localtime(t)) if t > 0 else ""
        line += position(lat, "lat", latlong, sign) + sep + position(lon, "lon", latlong, sign)
        line += "".join(sep + reading(c, decimals) for c in ch) + (sep + "%d" % acc if flags & 0x08 else "")
        first = [text for rec, text in survey.tags if rec == i]
        line += sep + first[0] if first else ""
        want.append(line)
    got = open(txt, "rb").read().decode("latin-1")
    fact(got.endswith("\r\n") and "\n" not in got.replace("\r\n", ""), "text-mode line ends")
    lines = got.split("\r\n")[:-1]
    written = lines.pop(3) if len(lines) > 3 else ""
    fact(re.fullmatch(r"Written \w{3} \w{3} \d\d \d\d:\d\d:\d\d \d{4}", written) is not None
         and abs(time.mktime(time.strptime(written[8:], "%a %b %d %H:%M:%S %Y")) - time.time()) < 600,
         f"'{written}' is the time of writing")
    fact(lines[3:4] == [""], "an empty line after it")
    del lines[3]
    for k, (g, w) in enumerate(zip(lines, want)):
        fact(g == w, f"line {k + 1}: {g!r}" + ("" if g == w else f", expected {w!r}"))
    fact(len(lines) == len(want), f"{len(lines)} lines, {len(want)} expected")


{"filtered": filtered, "listing": listing}[sys.argv[1]](*sys.argv[2:])
PY
check() { e2e_check checks.txt "$CHECK" "$@"; }

BY_READING="$ART/by_reading.DAT"
BY_POSITION="$ART/by_position.DAT"
LIST1="$ART/list_deg_comma.txt"
LIST2="$ART/list_dms_tab.txt"
$VIEWS make "$DAT"

e2e_start_on_survey "$DAT"

FILTER="Filter Records"
MAKE_FILE="Create Listing File"
open_filter() { e2e_open_dialog alt+r f "$FILTER" "Filter records"; }
open_make_file() {
  e2e_open_dialog alt+f f "$MAKE_FILE" "Creating list file"
  [ -z "${1:-}" ] || e2e_keys End shift+Home BackSpace ":$(e2e_winpath "$1")"
}

e2e_ini_mark
open_filter
e2e_shot filter_box 0.5
e2e_has_labels "$FILTER" "Filter on Position" "Remove readings where GPS was not tracking" \
  "Filter on Latitude" "mSec" "Filter on Longitude" "Filter on Reading" "Filter on channel" \
  "all readings" "Calibrated units" "Raw units" "OK" "Cancel" "Help"
e2e_step Return "box=Nothing to do" "" "" filter_nothing_to_do
e2e_refused "$FILTER" "Nothing to do"
e2e_step Escape "nowindow=$FILTER" unchanged
e2e_pass "Filter Records: \"Nothing to do\" keeps it open; Cancel writes nothing"

# Channel 1 less than 50.2 in calibrated units; then GPS not tracking,
# latitude greater than 185414000 and longitude less than -3594000.
open_filter
e2e_step "Tab Tab Tab Tab Tab Tab Tab space Tab Tab Down Tab :50.2 Return" "nowindow=$FILTER"
e2e_save_as "$BY_READING"
check filtered "$DAT" "$BY_READING" reading

open_filter
e2e_step "space Tab space Tab Tab :185414000 Tab space Tab Down Tab :-3594000 Return" "nowindow=$FILTER" "" "" filtered
e2e_save_as "$BY_POSITION"
check filtered "$DAT" "$BY_POSITION" position
e2e_pass "filters by reading, then by position: each saved file holds the records left and their tags"

e2e_ini_mark
open_make_file
e2e_shot make_file_box 0.5
e2e_has_labels "$MAKE_FILE" "File Name" "Select" "Deg" "Deg Min" "Deg Min Sec" "Milliseconds" \
  "North/South" "+/-" "0" "0.0" "0.000" "Raw" "Space" "TAB" "Comma" "OK" "Cancel" "&Help"
e2e_keys End shift+Home BackSpace
e2e_step Return "box=No filename specified" "" "" make_file_no_name
e2e_refused "$MAKE_FILE" "No filename specified"
e2e_step Escape "nowindow=$MAKE_FILE" unchanged

# Deg, North/South, 0.0 (the defaults) and Comma.
open_make_file "$LIST1"
e2e_step "Tab Tab Tab Tab Tab Down Down Return" "nowindow=$MAKE_FILE; status=Data written to file '$(basename "$LIST1")'"
check listing "$BY_POSITION" "$LIST1" 1 1 1 3
e2e_pass "Create Listing File: no name refused, nothing stored; a listing file in Deg, North/South, 0.0, Comma"

# Deg Min Sec, +/-, 0.000, TAB into the same name: No keeps the file, and
# the format is stored before the question. Select, from the separators
# back to its button, names the second file.
OVERWRITE="File $(basename "$LIST1")\\nalready exists.\\nOverwrite?"
cp "$LIST1" "$ART/list1_before.txt"
open_make_file "$LIST1"
e2e_step "Tab Tab Down Down Tab Down Tab Down Tab Up Return" "window=VELDOR; box=$OVERWRITE" "" "" make_file_overwrite
e2e_step n "nowindow=VELDOR; window=$MAKE_FILE" "[Listing File] Lat/Long=3; Sign=2; Decimal places=3; Separator=2"
cmp -s "$LIST1" "$ART/list1_before.txt" || e2e_fail "No changed $(basename "$LIST1")"
e2e_step "shift+Tab shift+Tab shift+Tab shift+Tab space" "window=Save Text File..." "" "" save_text_file
e2e_type "$(e2e_winpath "$LIST2")"
e2e_step Return "nowindow=Save Text File...; window=$MAKE_FILE"
e2e_step "Tab Return" "nowindow=$MAKE_FILE; status=Data written to file '$(basename "$LIST2")'"
check listing "$BY_POSITION" "$LIST2" 3 2 3 2

# Yes overwrites, in the format now stored.
open_make_file "$LIST1"
e2e_step Return "window=VELDOR; box=$OVERWRITE"
e2e_step y "nowindow=$MAKE_FILE; status=Data written to file '$(basename "$LIST1")'"
check listing "$BY_POSITION" "$LIST1" 3 2 3 2
e2e_pass "listing file through Select in Deg Min Sec, +/-, 0.000, TAB; No kept the old file, Yes overwrote it in the stored format"

e2e_quit
