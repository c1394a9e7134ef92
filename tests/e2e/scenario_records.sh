#!/usr/bin/env bash
# Record > Filter and File > Create Listing File on a survey the test made
# (views_survey.py: 300 records, every GPS state, five tags), opened through
# File > Open with no controller:
#   - Filter Records with no test chosen says "Nothing to do" and stays
#     open; Cancel then leaves the settings file as it was;
#   - a filter by reading (channel 1 "less than" 50.2 in calibrated units)
#     and then one by position (GPS not tracking, latitude "greater than",
#     longitude "less than"): after each, Save As writes exactly the records
#     that must remain, with the tags on their records;
#   - Create Listing File: an empty name says "No filename specified" and
#     stores nothing; two formats, one picked through Select, each file equal
#     line by line to what the survey file says it must hold; a name that
#     exists asks before overwriting, and No leaves the file as it was.
# Every expectation is computed by records_check below from the files alone.
set -euo pipefail
E2E_SCENARIO=records
# shellcheck source=lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

CHECK="$ART/records_check.py"
cat >"$CHECK" <<'PY'
"""Expectations of the records scenario, computed from data files alone.

  filtered ORIG SAVED reading|position   SAVED holds ORIG less what the filters
                                         up to the one named remove
  listing DAT TXT LATLONG SIGN DECIMALS SEPARATOR
                                         TXT is the listing text file of DAT
"""
import re
import sys
import time

from views_survey import fact
from veldor_dat import f32, position, read as read_file, reading, value

LAT_LIMIT, LON_LIMIT, READING_LIMIT = 185414000, -3594000, "50.2"


def read(path):
    survey = read_file(path)
    return survey.records, survey.tags


def by_reading(row):
    return value(row[2][0]) < f32(float(READING_LIMIT))


def by_position(row):
    return (row[0] & 0x14) != 0x14 or row[3] > LAT_LIMIT or row[4] < LON_LIMIT


def apply(rows, tags, removes):
    new_index, kept = {}, []
    for i, r in enumerate(rows):
        if not removes(r):
            new_index[i] = len(kept)
            kept.append(r)
    return kept, [(new_index[r], t) for r, t in tags if r in new_index]


def filtered(orig, saved, last):
    rows, tags = read(orig)
    rows, tags = apply(rows, tags, by_reading)
    if last == "position":
        rows, tags = apply(rows, tags, by_position)
    got_rows, got_tags = read(saved)
    fact(0 < len(rows) < 300 and tags, f"{len(rows)} records and {len(tags)} tags must remain")
    fact(got_rows == rows, f"{len(got_rows)} records saved, {len(rows)} expected")
    fact(got_tags == tags, f"tags {got_tags}, expected {tags}")


def listing(dat, txt, latlong, sign, decimals, separator):
    rows, tags = read(dat)
    sep = {1: " ", 2: "\t", 3: ","}[separator]
    name = dat.replace("\\", "/").rsplit("/", 1)[-1]
    want = ["VELDOR -Listing text file", "", "Created from " + name]
    for i, (flags, acc, ch, lat, lon, t) in enumerate(rows):
        line = ""
        if t > 0:
            tm = time.localtime(t)
            line = "%d/%d/%d%s%02d:%02d:%02d%s" % (tm.tm_mday, tm.tm_mon, tm.tm_year, sep,
                                                   tm.tm_hour, tm.tm_min, tm.tm_sec, sep)
        line += position(lat, "lat", latlong, sign) + sep + position(lon, "lon", latlong, sign)
        line += "".join(sep + reading(c, decimals) for c in ch)
        if flags & 0x08:
            line += sep + "%d" % acc
        first = [text for rec, text in tags if rec == i]
        if first:
            line += sep + first[0]
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


if __name__ == "__main__":
    if sys.argv[1] == "filtered":
        filtered(*sys.argv[2:5])
    elif sys.argv[1] == "listing":
        listing(sys.argv[2], sys.argv[3], *[int(a) for a in sys.argv[4:8]])
    else:
        sys.exit(__doc__)
PY
check() { e2e_check checks.txt "$CHECK" "$@"; }

DAT="$ART/survey.DAT"
BY_READING="$ART/by_reading.DAT"
BY_POSITION="$ART/by_position.DAT"
LIST1="$ART/list_deg_comma.txt"
LIST2="$ART/list_dms_tab.txt"
python3 "$E2E_ROOT_DIR/tests/e2e/views_survey.py" make "$DAT"

e2e_fresh_settings
e2e_view_layout
e2e_start_on_survey "$DAT"

shot() { sleep 0.5; e2e_shot "$1"; }
ini_snapshot() { INI_BEFORE="$(e2e_ini_sum)"; }
ini_unchanged() { [ "$(e2e_ini_sum)" = "$INI_BEFORE" ] || e2e_fail "$1 changed the settings file"; }
# message TEXT: a "VELDOR" box in front saying TEXT (newlines as \n).
message() {
  e2e_expect "no box \"$1\"" -t 10 window=VELDOR
  grep -qF "|$1" "$ART/last_probe.txt" || e2e_fail "the box does not say \"$1\": $(grep '^control=' "$ART/last_probe.txt" | tr '\n' ' ')"
}
open_filter() { e2e_open_dialog alt+r f "Filter Records" "Filter records"; }

# ---- Filter Records: nothing chosen, then Cancel ---------------------------------------------
ini_snapshot
open_filter
shot filter_box
e2e_has_labels "Filter Records" "Filter on Position" "Remove readings where GPS was not tracking" \
  "Filter on Latitude" "mSec" "Filter on Longitude" "Filter on Reading" "Filter on channel" \
  "all readings" "Calibrated units" "Raw units" "OK" "Cancel" "Help"
e2e_key Return
message "Nothing to do"
shot filter_nothing_to_do
e2e_key Return
e2e_expect "Filter Records closed after \"Nothing to do\"" -t 5 nowindow=VELDOR window="Filter Records"
e2e_key Escape
e2e_expect "Cancel did not close Filter Records" -t 5 nowindow="Filter Records"
ini_unchanged "Filter Records with Cancel"
e2e_pass "Filter Records: \"Nothing to do\" keeps it open; Cancel writes nothing"

# ---- Filter by reading: channel 1 less than 50.2, calibrated ---------------------------------------
open_filter
e2e_key Tab Tab Tab Tab Tab Tab Tab space Tab Tab Down Tab
e2e_type 50.2
e2e_key Return
e2e_expect "Filter Records stayed open" -t 10 nowindow="Filter Records"
e2e_save_as "$BY_READING"
check filtered "$DAT" "$BY_READING" reading
e2e_pass "filter by reading: the saved file holds the records left and their tags"

# ---- Filter by position: not tracking, latitude greater than, longitude less than -----------------
open_filter
e2e_key space Tab space Tab Tab
e2e_type 185414000
e2e_key Tab space Tab Down Tab
xdotool type --delay 20 -- -3594000
e2e_key Return
e2e_expect "Filter Records stayed open" -t 10 nowindow="Filter Records"
shot filtered
e2e_save_as "$BY_POSITION"
check filtered "$DAT" "$BY_POSITION" position
e2e_pass "filter by position: the saved file holds the records left and their tags"

# ---- Create Listing File ------------------------------------------------------------------------
open_make_file() { e2e_open_dialog alt+f f "Create Listing File" "Creating list file"; }
# Replaces the text of the edit that has the focus.
retype() { e2e_key End shift+Home BackSpace; [ -z "$1" ] || e2e_type "$1"; }
written() { e2e_wait_status "Data written to file '$1'" 10 || e2e_fail "no \"Data written to file '$1'\""; }

ini_snapshot
open_make_file
shot make_file_box
e2e_has_labels "Create Listing File" "File Name" "Select" "Deg" "Deg Min" "Deg Min Sec" "Milliseconds" \
  "North/South" "+/-" "0" "0.0" "0.000" "Raw" "Space" "TAB" "Comma" "OK" "Cancel" "&Help"
retype ""
e2e_key Return
message "No filename specified"
shot make_file_no_name
e2e_key Return
e2e_expect "the dialog closed after \"No filename specified\"" -t 5 nowindow=VELDOR window="Create Listing File"
e2e_key Escape
e2e_expect "Cancel did not close the dialog" -t 5 nowindow="Create Listing File"
ini_unchanged "Create Listing File with no name"
e2e_pass "Create Listing File: no name refused, nothing stored"

# Deg, North/South, 0.0 (the defaults) and Comma.
open_make_file
retype "$(e2e_winpath "$LIST1")"
e2e_key Tab Tab Tab Tab Tab Down Down Return
e2e_expect "the dialog stayed open" -t 10 nowindow="Create Listing File"
written "$(basename "$LIST1")"
check listing "$BY_POSITION" "$LIST1" 1 1 1 3
e2e_pass "listing file in Deg, North/South, 0.0, Comma"

# Deg Min Sec, +/-, 0.000, TAB into the same name: No keeps the file.
cp "$LIST1" "$ART/list1_before.txt"
open_make_file
retype "$(e2e_winpath "$LIST1")"
e2e_key Tab Tab Down Down Tab Down Tab Down Tab Up Return
message "File $(basename "$LIST1")\\nalready exists.\\nOverwrite?"
shot make_file_overwrite
e2e_key n
e2e_expect "the dialog closed after No" -t 5 nowindow=VELDOR window="Create Listing File"
cmp -s "$LIST1" "$ART/list1_before.txt" || e2e_fail "No changed $(basename "$LIST1")"
e2e_expect_ini "Listing File" Lat/Long=3 Sign=2 "Decimal places=3" Separator=2  # stored before the question
# Select, from the separators back to its button, names the second file.
e2e_key shift+Tab shift+Tab shift+Tab shift+Tab space
e2e_expect "no file dialog \"Save Text File...\"" -t 15 window="Save Text File..."
shot save_text_file
e2e_type "$(e2e_winpath "$LIST2")"
e2e_key Return
e2e_expect "the file dialog stayed" -t 10 nowindow="Save Text File..." window="Create Listing File"
e2e_key Tab Return
e2e_expect "the dialog stayed open" -t 10 nowindow="Create Listing File"
written "$(basename "$LIST2")"
check listing "$BY_POSITION" "$LIST2" 3 2 3 2
e2e_pass "listing file through Select in Deg Min Sec, +/-, 0.000, TAB; No kept the old file"

# Yes overwrites, in the format now stored.
open_make_file
retype "$(e2e_winpath "$LIST1")"
e2e_key Return
message "File $(basename "$LIST1")\\nalready exists.\\nOverwrite?"
e2e_key y
e2e_expect "the dialog stayed open" -t 10 nowindow="Create Listing File"
written "$(basename "$LIST1")"
check listing "$BY_POSITION" "$LIST1" 3 2 3 2
e2e_pass "Yes overwrote the file in the stored format"

e2e_quit
