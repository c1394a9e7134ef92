#!/usr/bin/env bash
# Record > Calibration with the simulator streaming readings, on the survey
# of the views scenario (views_survey.py: 300 records) opened first:
#   - the editor sends "CA 1", its caption names Default.cal and its list
#     shows the default curve; "Insert Power" puts a raw reading that the
#     simulator sent for channel 1 into the power edit;
#   - "New" through "Open Calibration File..." writes a file of no points at
#     once and names it in the caption and in "Ch1 filename";
#   - the points (0, 0) and (255, 2550) typed in, then "Save": the .CAL file
#     holds exactly them; the screenshot shows the dotted live line at the
#     place of a reading the simulator sent, and the curve;
#   - "Done" sends "OP 1"; File > Create Listing File then writes channel 1
#     of the records already taken on the new curve, the others on the
#     default one.
# The simulator has no fixed readings: the readings sent are read from its log.
set -euo pipefail
E2E_SCENARIO=calibration
# shellcheck source=lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

DAT="$ART/survey.DAT"
CAL="$ART/chan1.cal"
LIST="$ART/listing.txt"
CHECK="$ART/calibration_check.py"
python3 "$E2E_ROOT_DIR/tests/e2e/views_survey.py" make "$DAT"

cat >"$CHECK" <<'PY'
"""Expectations of the calibration scenario.

  cal FILE                  FILE is the .CAL of the points (0, 0.0), (255, 2550.0)
  empty FILE                FILE is a .CAL of no points
  recent SIMLOG N VALUE     VALUE is channel 1 of one of the last N samples sent
  live SHOT.png SIMLOG N    the dotted live line stands where one of the last N
                            channel 1 readings puts it in the graph's white box,
                            and the curve is drawn
  listing DAT TXT           the listing's readings: channel 1 on the new curve,
                            2 to 4 on the default one, "%.1f"
"""
import struct
import sys

from views_survey import Shot, fact
from veldor_dat import f32, read, value as curve

MAGIC = b"[VELDOR - cal file v1.0]\0"
RED, BLUE, BLACK = (192, 0, 0), (0, 0, 128), (0, 0, 0)


def recent(log, n):
    rows = [l.split() for l in open(log) if " TX RA " in l]
    return [int(r[3]) for r in rows[-n:]]


def check_cal(path, points):
    b = open(path, "rb").read()
    want = MAGIC + struct.pack("<i", len(points))
    for p, v in points:
        want += struct.pack("<B3xf", p, v)
    fact(b == want, f"{path}: {len(b)} bytes {b[25:].hex()}, expected {want[25:].hex()}")


def live(shot, log, n):
    s = Shot(shot)
    w, h, px = s.w, s.h, s.at
    reds = [(x, y) for y in range(h) for x in range(w) if px(x, y) == RED]
    fact(len(reds) > 20, f"{len(reds)} pixels of the live line")
    xs = sorted({x for x, _ in reds})
    fact(len(xs) == 1, f"the live line is one column: {xs}")
    x, y = reds[len(reds) // 2]
    left = x
    while left > 0 and px(left, y) != BLACK:
        left -= 1
    right = x
    while right < w - 1 and px(right, y) != BLACK:
        right += 1
    width = right - left - 2  # the box's outline at left and right, one more taken off
    places = {r: left + 1 + int(f32(f32(r / 255.0) * width)) for r in recent(log, n)}
    fact(x in places.values(), f"live line at x {x}; readings {places}")
    blues = sum(1 for yy in range(h) for xx in range(left, right) if px(xx, yy) == BLUE)
    fact(blues > width, f"{blues} pixels of the curve")


def listing(dat, txt):
    rows = [r.ch for r in read(dat).records]
    count = len(rows)
    lines = open(txt, "rb").read().decode("latin-1").split("\r\n")[4:]
    lines = [l for l in lines if l]
    fact(len(lines) == count, f"{len(lines)} listing lines for {count} records")
    changed = 0
    for i, (line, ch) in enumerate(zip(lines, rows)):
        want = " ".join(["%.1f" % curve(ch[0], 2550.0)] + ["%.1f" % curve(c, 100.0) for c in ch[1:]])
        if (" " + want) not in line:
            fact(False, f"line {i + 1}: {line!r} lacks {want!r}")
        changed += curve(ch[0], 2550.0) != curve(ch[0], 100.0)
    fact(changed > count // 2, f"all {count} lines hold the new values ({changed} differ from the old)")


if __name__ == "__main__":
    cmd = sys.argv[1]
    if cmd == "cal":
        check_cal(sys.argv[2], [(0, 0.0), (255, 2550.0)])
    elif cmd == "empty":
        check_cal(sys.argv[2], [])
    elif cmd == "recent":
        fact(int(sys.argv[4]) in recent(sys.argv[2], int(sys.argv[3])),
             f"{sys.argv[4]} among the last readings {recent(sys.argv[2], int(sys.argv[3]))}")
    elif cmd == "live":
        live(sys.argv[2], sys.argv[3], int(sys.argv[4]))
    elif cmd == "listing":
        listing(sys.argv[2], sys.argv[3])
    else:
        sys.exit(__doc__)
PY
check() { e2e_check checks.txt "$CHECK" "$@"; }
shot() { sleep 0.7; e2e_shot "$1"; }
EDITOR_DEFAULT="VELDOR - Calibration [ Default.cal ]"
EDITOR_NEW="VELDOR - Calibration [ chan1.cal ]"

e2e_fresh_settings
e2e_view_layout
e2e_start_linked
e2e_open_survey "$DAT"

# ---- Opening: "CA 1", the caption, the default curve -----------------------------------------
e2e_open_dialog alt+r b "$EDITOR_DEFAULT" Calibration
e2e_wait_log "RX CA 1" 5 || e2e_fail "no CA 1 on opening"
e2e_has_labels "the editor" "Channel 1" "Channel 2" "Channel 3" "Channel 4" "Power (X axis)" \
  "Value (Y axis)" "Power" "Value" "Insert Power" "Add" "Change" "Delete" "New" "Open" "Save" \
  "Save as" "Done" "Help" "Power calibration curve"
shot editor_default
e2e_pass "the editor opens with \"CA 1\" and names Default.cal"

# Focus on "Channel 1"; the tab order: list, Power, Value, Insert Power,
# Add, Change, Delete, New, Open, Save, Save as, Done, Help.
e2e_wait_samples 2 10 || e2e_fail "no samples in calibration mode"
e2e_key Tab Tab Tab Tab space
sleep 0.5
e2e_expect "the editor went" -t 5 window="$EDITOR_DEFAULT"
power="$(e2e_control_text Edit 1311)"
[[ "$power" =~ ^[0-9]{3}$ ]] || e2e_fail "Insert Power gave \"$power\""
check recent "$SIM_LOG" 4 "$((10#$power))"
e2e_pass "Insert Power: $power, a reading the simulator sent"

# ---- New: a file of no points at once -----------------------------------------------------
e2e_key Tab Tab Tab Tab space
e2e_expect "no file dialog \"Open Calibration File...\"" -t 15 window="Open Calibration File..."
shot new_dialog
e2e_type "$(e2e_winpath "$CAL")"
e2e_key Return
e2e_expect "the caption does not name chan1.cal" -t 15 nowindow="Open Calibration File..." \
  window="$EDITOR_NEW"
e2e_wait_status "Written calibration file 'chan1.cal'" 10 || e2e_fail "New wrote no file"
check empty "$CAL"
e2e_expect_ini Calibration "Ch1 filename=$(e2e_winpath "$CAL")"
e2e_pass "New: chan1.cal of no points, named in the caption and the settings"

# ---- Two points typed in, then Save ---------------------------------------------------------
# Focus back on New: Power is six places before it.
e2e_key shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab
e2e_type 0
e2e_key Tab
e2e_type 0
e2e_key Tab Tab space
e2e_key shift+Tab shift+Tab shift+Tab
e2e_type 255
e2e_key Tab
e2e_type 2550
e2e_key Tab Tab space
sleep 0.5
e2e_expect "the editor went" -t 5 window="$EDITOR_NEW"
shot editor_two_points
check live "$ART/editor_two_points.png" "$SIM_LOG" 4
e2e_mark
e2e_key Tab Tab Tab Tab Tab space
e2e_wait_status "Written calibration file 'chan1.cal'" 10 || e2e_fail "Save wrote no file"
check cal "$CAL"
e2e_pass "Save: chan1.cal holds (0, 0.0) and (255, 2550.0); the live line and the curve are drawn"

# ---- Done: "OP 1", and the listing of the records already taken ------------------------------------
before=$(e2e_received | wc -l)
e2e_key Tab Tab space
e2e_expect "Done did not close the editor" -t 10 nowindow="$EDITOR_NEW"
e2e_wait_received "$before" 1 5 || e2e_fail "nothing sent at Done"
[ "$(e2e_received_after "$before" | sed -n 1p)" = "OP 1" ] || e2e_fail "Done sent: $(e2e_received_after "$before" | head -3 | tr '\n' '|')"
e2e_pass "Done sends \"OP 1\""

e2e_open_dialog alt+f f "Create Listing File" "Creating list file"
e2e_key End shift+Home BackSpace
e2e_type "$(e2e_winpath "$LIST")"
e2e_key Return
e2e_expect "the dialog stayed open" -t 10 nowindow="Create Listing File"
e2e_wait_status "Data written to file 'listing.txt'" 10 || e2e_fail "no listing written"
check listing "$DAT" "$LIST"
e2e_view_shot views_after
e2e_pass "the listing file shows the records already taken on the new curve"
e2e_check_answering
