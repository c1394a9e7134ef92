#!/usr/bin/env bash
# The settings dialogs on the survey of the views scenario (views_survey.py),
# opened through File > Open with no controller and TZR4100 mode on:
#   - Configure > Display: Milliseconds, "+/-" and Raw by the arrow keys; OK
#     writes "4", "2" and "-1" at once and the Listing's positions and
#     readings are drawn anew; Cancel on another choice writes nothing;
#   - the Plot's Colours/Size: Up in the first break gives 81.000; breaks
#     that do not fall and then a dot size of 60 are refused with their
#     messages and the dialog stays; OK on 95/90/85 and 9 writes them and the
#     dots take the new bands and size;
#   - Record > Settings: Distance is refused in TZR4100 mode; then Time, 0
#     seconds, "abc" metres, autosave every 7 minutes, averaging and new
#     channel labels: the keys hold 1, 1, 1, 7 and 1 and the Listing's header
#     shows the labels;
#   - File > Preferences: the next Listing font (with "Arial" not installed
#     the Plot's stays unselected and is written empty), Listing size 28, Plot
#     size 20 and the full path: the keys are written, the caption shows the
#     whole path and the Listing's rows grow from those of size 12, whichever
#     font the list offers (a bitmap font is scaled by whole factors).
set -euo pipefail
E2E_SCENARIO=general
# shellcheck source=lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
VIEWS="python3 $E2E_ROOT_DIR/tests/e2e/views_survey.py"

DAT="$ART/general.DAT"
$VIEWS make "$DAT"

# expect_message TITLE TEXT: a message box with TEXT (its first line) over the
# dialog; Return closes it and the dialog stays.
expect_message() {
  e2e_expect "no message box for: $2" -t 10 window=VELDOR
  grep -q -F "control=Static|65535|$2" "$ART/last_probe.txt" ||
    e2e_fail "the box says: $(grep '^control=Static' "$ART/last_probe.txt" | tr '\n' ' ')"
  e2e_key Return
  e2e_expect "the dialog closed after the message" -t 10 nowindow=VELDOR "window=$1"
}
# The scenario's own pixel facts, on the views module's helpers.
PIXELS="$ART/pixels.py"
cat >"$PIXELS" <<'PY'
import sys
import views_survey as v
what, args = sys.argv[1], sys.argv[2:]

def region(shot, probe, x0, x1, y0, y1):
    s = v.Shot(shot)
    ox, oy, w, h, band = v.listing_metrics(s, probe)
    return [s.at(ox + x, oy + y) for x in range(int(w * x0), int(w * x1)) for y in range(int(band * y0), int(band * y1))]

if what == "listing-changed":  # before, after, probe, x0, x1, y0, y1 (y in rows of the header's height)
    a = region(args[0], args[2], *map(float, args[3:7]))
    b = region(args[1], args[2], *map(float, args[3:7]))
    diff = sum(p != q for p, q in zip(a, b))
    v.fact(diff > 20, f"{diff} pixels changed between {args[0]} and {args[1]}")
elif what == "row-height":  # shot, probe: prints the header band's height
    s = v.Shot(args[0])
    print(v.listing_metrics(s, args[1])[4])
elif what == "dots":  # shot, probe, dat, break1, break2, break3, dot size (channel 1)
    s, recs = v.Shot(args[0]), v.read_records(args[2])
    breaks, size = [float(b) for b in args[3:6]], int(args[6])
    ox, oy, w, h = v.client(args[1], "Veldor_Plot")
    pix, area = v.plot_pixels(recs, w, h, "")
    checked, bands = 0, set()
    for i in range(0, len(recs), 7):
        x, y = pix[i]
        if not (area[0] + size <= x < area[2] - size and area[1] + size <= y < area[3] - size):
            continue
        val = v.value(recs[i][1][0])
        b = next((k for k in range(3) if val > breaks[k]), 3)
        bands.add(b)
        half = size // 2
        for px, py in [(x, y), (x - half, y - half), (x + size - half - 1, y), (x + 3, y)]:
            got = s.at(ox + px, oy + py)
            v.fact(got == v.BAND_RGB[b], f"record {i + 1} at ({px}, {py}): {got}, band {b} {v.BAND_RGB[b]}")
        got = s.at(ox + x + size - half, oy + y)
        v.fact(got == (255, 255, 255), f"record {i + 1}: white beside the dot at {x + size - half}: {got}")
        checked += 1
    v.fact(checked >= 10 and len(bands) >= 2, f"{checked} dots checked, bands {sorted(bands)}")
PY
pixels() { e2e_check pixels.txt "$PIXELS" "$@"; }
# pixels_out WHAT ARGS...: a measure of a screenshot, printed.
pixels_out() { PYTHONPATH="$E2E_ROOT_DIR/tests/e2e" python3 "$PIXELS" "$@"; }

e2e_fresh_settings
e2e_view_layout
e2e_settings <<EOF
Listing|Lat/Long|1
Listing|Sign|1
Listing|Decimal places|0
TZR4100|Enable TZR4100 mode|1
EOF
e2e_start_on_survey "$DAT"
e2e_view_shot opened

# ---- Configure > Display ------------------------------------------------------------------------
# Every group starts on its first button, so the arrow keys go to known ones.
e2e_open_dialog alt+c d "VELDOR - Display settings" "Configure display"
e2e_shot display_dialog
e2e_key Down Down Down Tab Down Tab Down Down Down Return
e2e_expect "OK did not close the display dialog" -t 10 "nowindow=VELDOR - Display settings"
e2e_expect_ini Listing Lat/Long=4 Sign=2 "Decimal places=-1"
e2e_view_shot display_after
pixels listing-changed "$ART/opened.png" "$ART/display_after.png" "$ART/opened.probe" 0.2 0.4 1.2 5
pixels listing-changed "$ART/opened.png" "$ART/display_after.png" "$ART/opened.probe" 0.6 0.7 1.2 5
e2e_open_dialog alt+c d "VELDOR - Display settings" "Configure display"
e2e_key Up Escape
e2e_expect "Escape did not close the display dialog" -t 10 "nowindow=VELDOR - Display settings"
e2e_expect_ini Listing Lat/Long=4
e2e_pass "Display: Milliseconds, +/- and Raw written as 4, 2, -1 and drawn; Cancel writes nothing"

# ---- The Plot's Colours/Size --------------------------------------------------------------------
e2e_mark
e2e_click Veldor_Plot 200 400 3
e2e_wait_status "Plot pop up menu" 5 || e2e_fail "no Plot popup menu"
e2e_open_dialog "" c "VELDOR - Plot colours/size" "Set plot colours"
e2e_shot colours_dialog
e2e_key Up
e2e_expect "Up did not step the first break" -t 5 "window=VELDOR - Plot colours/size"
[ "$(e2e_control_text Edit 1731)" = 81.000 ] || e2e_fail "the first break after Up: '$(e2e_control_text Edit 1731)'"
e2e_key Tab
e2e_type 90
e2e_key Return
e2e_shot colours_refused
expect_message "VELDOR - Plot colours/size" "Error in number sequance"
e2e_key shift+Tab
e2e_type 95
e2e_key Tab
e2e_type 90
e2e_key Tab
e2e_type 85
e2e_key Tab
e2e_type 60
e2e_key Return
expect_message "VELDOR - Plot colours/size" "Invalid dot size"
e2e_expect_ini Plot "Dot size="
e2e_key shift+Tab Tab
e2e_type 9
e2e_key Return
e2e_expect "OK did not close the colours dialog" -t 10 "nowindow=VELDOR - Plot colours/size"
e2e_expect_ini Plot "Power break 1=95.000" "Power break 2=90.000" "Power break 3=85.000" "Dot size=9"
e2e_view_shot colours_after
pixels dots "$ART/colours_after.png" "$ART/colours_after.probe" "$DAT" 95 90 85 9
e2e_pass "Colours/Size: spin, both refusals, then 95/90/85 and 9 written and drawn"

# ---- Record > Settings --------------------------------------------------------------------------
e2e_open_dialog alt+r e "VELDOR - Record settings" "Configure record settings"
e2e_shot recset_dialog
e2e_key Down Return
e2e_shot recset_refused
expect_message "VELDOR - Record settings" "A distance recording interval and TZR mode are incompatible."
e2e_expect_ini General "Record Interval in Meters="
e2e_key Up Tab
e2e_type 0
e2e_key Tab
e2e_type abc
e2e_key Tab space Tab
e2e_type 7
e2e_key Tab space Tab
e2e_type Alpha
e2e_key Tab
e2e_type Beta
e2e_key Tab
e2e_type Gamma
e2e_key Tab
e2e_type "DeltaDeltaDeltaDeltaDeltaDeltaDelta"
e2e_wait -t 2 "window=VELDOR - Record settings" || true
[ "$(e2e_control_text Edit 1764)" = DeltaDeltaDeltaDeltaDeltaDeltaD ] ||
  e2e_fail "the fourth label holds '$(e2e_control_text Edit 1764)', not its first 31 characters"
e2e_key Return
e2e_expect "OK did not close the record settings" -t 10 "nowindow=VELDOR - Record settings"
e2e_expect_ini General "Record Interval in Meters=0" "Record Interval Seconds=1" "Record Interval Meters=1" "Autosave Enable=1" "Autosave Interval=7" Averaging=1
e2e_view_shot recset_after
pixels listing-changed "$ART/colours_after.png" "$ART/recset_after.png" "$ART/opened.probe" 0.6 1.0 0 1
e2e_pass "Record settings: TZR refusal, then 1, 1, 1, 7, 1 written and the labels drawn"

# ---- File > Preferences -------------------------------------------------------------------------
before_rows="$(pixels_out row-height "$ART/recset_after.png" "$ART/recset_after.probe")"
e2e_open_dialog alt+f p "VELDOR - Preferences" "Set preferences"
e2e_shot prefs_dialog
e2e_key Down Tab
e2e_type 28
e2e_expect "no Preferences" -t 5 "window=VELDOR - Preferences"
[ "$(e2e_control_text Edit 1774)" = 28 ] || e2e_fail "the Listing size typed: '$(e2e_control_text Edit 1774)'"
e2e_key Tab Tab
e2e_type 20
e2e_key Tab Tab Tab space
e2e_expect "no Preferences" -t 5 "window=VELDOR - Preferences"
e2e_key Return
e2e_expect "OK did not close the preferences, or the caption is not the whole path" -t 10 \
  "nowindow=VELDOR - Preferences" "caption=VELDOR [ $(e2e_winpath "$DAT") ]"
# The probe cannot read a list of another program: the Listing's name is the
# font that Down chose, the Plot's the stored "Arial" if it is installed and
# otherwise empty, since then nothing was selected.
listing_font="$(e2e_ini_value Listing FontName)"
plot_font="$(e2e_ini_value Plot FontName)"
[ -n "$listing_font" ] && [ "$listing_font" != "$plot_font" ] ||
  e2e_fail "Down chose no other Listing font: '$listing_font', Plot '$plot_font'"
case "$plot_font" in "" | Arial) ;; *) e2e_fail "the Plot's font became '$plot_font'" ;; esac
e2e_expect_ini Listing FontSize=28
e2e_expect_ini Plot FontSize=20
e2e_expect_ini Chart FontSize=12
e2e_expect_ini General "Show Path=1"
e2e_view_shot prefs_after
after_rows="$(pixels_out row-height "$ART/prefs_after.png" "$ART/prefs_after.probe")"
[ "$after_rows" -gt "$before_rows" ] || e2e_fail "the Listing's rows did not grow: $before_rows, then $after_rows pixels"
e2e_pass "Preferences: '$listing_font' 28, Plot 20, full path; header $before_rows -> $after_rows pixels"

e2e_quit n
