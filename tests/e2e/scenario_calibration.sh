#!/usr/bin/env bash
# Record > Calibration with the simulator streaming, on a survey of 300 records: "CA 1" and the
# default curve; "Insert Power" takes a reading sent; "New" writes a file of no points; two points
# typed and saved, drawn with the live line; "Done" sends "OP 1"; the listing shows the new curve.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

CAL="$ART/chan1.cal"
LIST="$ART/listing.txt"
CHECK="$ART/calibration_check.py"
$VIEWS make "$DAT"

cat >"$CHECK" <<'PY'
"""live SHOT.png SIMLOG N: the dotted live line where channel 1 of one of the
last N samples sent puts it in the graph's box, and the curve drawn; listing
DAT TXT: channel 1 on the new curve, 2 to 4 on the default one, "%.1f"."""
import sys

from views_survey import Shot, fact
from veldor_dat import f32, read, value as curve

RED, BLUE, BLACK = (192, 0, 0), (0, 0, 128), (0, 0, 0)


def recent(log, n):
    return [int(l.split()[3]) for l in open(log) if " TX RA " in l][-int(n):]


def live(shot, log, n):
    s = Shot(shot)
    reds = [(x, y) for y in range(s.h) for x in range(s.w) if s.at(x, y) == RED]
    fact(len(reds) > 20, f"{len(reds)} pixels of the live line")
    fact(len({x for x, _ in reds}) == 1, f"the live line is one column: {sorted({x for x, _ in reds})}")
    x, y = reds[len(reds) // 2]
    left, right = x, x
    while left > 0 and s.at(left, y) != BLACK:
        left -= 1
    while right < s.w - 1 and s.at(right, y) != BLACK:
        right += 1
    width = right - left - 2  # the box's outline at left and right, one more taken off
    places = {r: left + 1 + int(f32(f32(r / 255.0) * width)) for r in recent(log, n)}
    fact(x in places.values(), f"live line at x {x}; readings {places}")
    blues = sum(1 for yy in range(s.h) for xx in range(left, right) if s.at(xx, yy) == BLUE)
    fact(blues > width, f"{blues} pixels of the curve")


def listing(dat, txt):
    rows = [r.ch for r in read(dat).records]
    lines = [l for l in open(txt, "rb").read().decode("latin-1").split("\r\n")[4:] if l]
    fact(len(lines) == len(rows), f"{len(lines)} listing lines for {len(rows)} records")
    for i, (line, ch) in enumerate(zip(lines, rows)):
        want = " ".join(["%.1f" % curve(ch[0], 2550.0)] + ["%.1f" % curve(c, 100.0) for c in ch[1:]])
        if (" " + want) not in line:
            fact(False, f"line {i + 1}: {line!r} lacks {want!r}")
    changed = sum(curve(ch[0], 2550.0) != curve(ch[0], 100.0) for ch in rows)
    fact(changed > len(rows) // 2, f"all {len(rows)} lines hold the new values ({changed} differ from the old)")


{"live": live, "listing": listing}[sys.argv[1]](*sys.argv[2:])
PY
check() { e2e_check checks.txt "$CHECK" "$@"; }
# cal_file BYTES WHAT: chan1.cal is its header and BYTES: the count of points, each point's byte and float.
cal_file() { printf '[VELDOR - cal file v1.0]\0%b' "$1" | cmp -s - "$CAL" || e2e_fail "chan1.cal is not $2: $(od -A n -t x1 "$CAL")"; }
recent() { grep ' TX RA ' "$SIM_LOG" | tail -n 4 | cut -d ' ' -f 4; }
EDITOR_DEFAULT="VELDOR - Calibration [ Default.cal ]"
EDITOR_NEW="VELDOR - Calibration [ chan1.cal ]"

e2e_view_layout
e2e_start_linked
e2e_open_survey "$DAT"

e2e_open_dialog alt+r b "$EDITOR_DEFAULT" Calibration
e2e_wait_log "RX CA 1" 5 || e2e_fail "no CA 1 on opening"
e2e_has_labels "the editor" "Channel 1" "Channel 2" "Channel 3" "Channel 4" "Power (X axis)" \
  "Value (Y axis)" "Power" "Value" "Insert Power" "Add" "Change" "Delete" "New" "Open" "Save" \
  "Save as" "Done" "Help" "Power calibration curve"
e2e_shot editor_default 0.7

# Focus on "Channel 1"; the tab order: list, Power, Value, Insert Power,
# Add, Change, Delete, New, Open, Save, Save as, Done, Help.
e2e_wait_samples 2 10 || e2e_fail "no samples in calibration mode"
e2e_key Tab Tab Tab Tab space
sleep 0.5
e2e_expect "the editor went" -t 5 window="$EDITOR_DEFAULT"
power="$(sed -n 's/^control=Edit|1311|//p' "$ART/last_probe.txt")"
[[ "$power" =~ ^[0-9]{3}$ ]] || e2e_fail "Insert Power gave \"$power\""
recent | grep -x "$((10#$power))" >/dev/null || e2e_fail "Insert Power gave $power, none of the last readings $(recent | tr '\n' ' ')"
e2e_pass "the editor opens with \"CA 1\" and names Default.cal; Insert Power: $power, a reading the simulator sent"

e2e_step "Tab Tab Tab Tab space" "window=Open Calibration File..." "" "" new_dialog
e2e_type "$(e2e_winpath "$CAL")"
e2e_step Return "nowindow=Open Calibration File...; window=$EDITOR_NEW; status=Written calibration file 'chan1.cal'" \
  "[Calibration] Ch1 filename=$(e2e_winpath "$CAL")"
cal_file '\0\0\0\0' "a file of no points"
e2e_pass "New: chan1.cal of no points, named in the caption and the settings"

# Focus back on New: Power is six places before it; Add is two after Value.
e2e_keys shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab :0 Tab :0 Tab Tab space
e2e_step "shift+Tab shift+Tab shift+Tab :255 Tab :2550 Tab Tab space" "window=$EDITOR_NEW" "" "" editor_two_points
check live "$ART/editor_two_points.png" "$SIM_LOG" 4
e2e_step "Tab Tab Tab Tab Tab space" "status=Written calibration file 'chan1.cal'"
cal_file '\x02\0\0\0\0\0\0\0\0\0\0\0\xff\0\0\0\0\x60\x1f\x45' "(0, 0.0), (255, 2550.0)"

e2e_wire_mark
e2e_step "Tab Tab space" "nowindow=$EDITOR_NEW"
e2e_expect_wire -p "Done" "OP 1"
e2e_pass "Save: chan1.cal holds (0, 0.0) and (255, 2550.0); the live line and the curve are drawn; Done sends \"OP 1\""

e2e_open_dialog alt+f f "Create Listing File" "Creating list file"
e2e_keys End shift+Home BackSpace ":$(e2e_winpath "$LIST")"
e2e_step Return "nowindow=Create Listing File; status=Data written to file 'listing.txt'"
check listing "$DAT" "$LIST"
e2e_view_shot views_after
e2e_pass "the listing file shows the records already taken on the new curve"
