#!/usr/bin/env bash
# The settings dialogs on a survey of 300 records, TZR4100 mode on: Display's formats written
# and drawn, Cancel writing nothing; the Plot's Colours/Size spin, refusal, breaks and dot
# size written and drawn; Record > Settings refusing Distance in TZR4100 mode, then its keys
# and labels; Preferences' fonts, sizes and full path written, the rows grown.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

$VIEWS make "$DAT"

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
    a, b = (region(shot, args[2], *map(float, args[3:7])) for shot in args[:2])
    diff = sum(p != q for p, q in zip(a, b))
    v.fact(diff > 20, f"{diff} pixels changed between {args[0]} and {args[1]}")
elif what == "row-height":  # shot, probe: prints the header band's height
    print(v.listing_metrics(v.Shot(args[0]), args[1])[4])
elif what == "dots":  # shot, probe, dat, break1, break2, break3, dot size (channel 1)
    s, recs, breaks, size = v.Shot(args[0]), v.read_records(args[2]), [float(b) for b in args[3:6]], int(args[6])
    ox, oy, w, h = v.client(args[1], "Veldor_Plot")
    pix, area = v.plot_pixels(recs, w, h, "")
    checked, bands, half = 0, set(), size // 2
    for i in range(0, len(recs), 7):
        x, y = pix[i]
        if not (area[0] + size <= x < area[2] - size and area[1] + size <= y < area[3] - size):
            continue
        b = next((k for k in range(3) if v.value(recs[i][1][0]) > breaks[k]), 3)
        bands.add(b)
        for px, py, rgb in [(x, y, v.BAND_RGB[b]), (x - half, y - half, v.BAND_RGB[b]),
                            (x + size - half - 1, y, v.BAND_RGB[b]), (x + 3, y, v.BAND_RGB[b]),
                            (x + size - half, y, (255, 255, 255))]:
            got = s.at(ox + px, oy + py)
            v.fact(got == rgb, f"record {i + 1} at ({px}, {py}): {got}, expected {rgb} (band {b})")
        checked += 1
    v.fact(checked >= 10 and len(bands) >= 2, f"{checked} dots checked, bands {sorted(bands)}")
PY
pixels() { e2e_check pixels.txt "$PIXELS" "$@"; }
pixels_out() { PYTHONPATH="$E2E_ROOT_DIR/tests/e2e" python3 "$PIXELS" "$@"; }

e2e_setting Listing Lat/Long 1 Listing Sign 1 Listing "Decimal places" 0 TZR4100 "Enable TZR4100 mode" 1
e2e_start_on_survey "$DAT"
e2e_view_shot opened

# Every group starts on its first button, so the arrow keys go to known ones.
DISPLAY_BOX="VELDOR - Display settings"
e2e_open_dialog alt+c d "$DISPLAY_BOX" "Configure display"
e2e_shot display_dialog
e2e_step "Down Down Down Tab Down Tab Down Down Down Return" "nowindow=$DISPLAY_BOX" \
  "[Listing] Lat/Long=4; Sign=2; Decimal places=-1"
e2e_view_shot display_after
pixels listing-changed "$ART/opened.png" "$ART/display_after.png" "$ART/opened.probe" 0.2 0.4 1.2 5
pixels listing-changed "$ART/opened.png" "$ART/display_after.png" "$ART/opened.probe" 0.6 0.7 1.2 5
e2e_open_dialog alt+c d "$DISPLAY_BOX" "Configure display"
e2e_step "Up Escape" "nowindow=$DISPLAY_BOX" "[Listing] Lat/Long=4"
e2e_pass "Display: Milliseconds, +/- and Raw written as 4, 2, -1 and drawn; Cancel writes nothing"

COLOURS="VELDOR - Plot colours/size"
e2e_mark
e2e_click Veldor_Plot 200 400 3
e2e_expect_status "Plot pop up menu"
e2e_open_dialog "" c "$COLOURS" "Set plot colours"
e2e_shot colours_dialog
e2e_step Up "window=$COLOURS; control=Edit,1731,81.000"
# Breaks out of order: Dialogs.ColoursBoxOkTestsTheOrderBeforeTheDotSize.
e2e_keys Tab shift+Tab :95 Tab :90 Tab :85 Tab :60 Return
e2e_shot colours_refused
e2e_refused "$COLOURS" "Invalid dot size*"
e2e_expect_ini Plot "Dot size="
e2e_step "shift+Tab Tab :9 Return" "nowindow=$COLOURS" \
  "[Plot] Power break 1=95.000; Power break 2=90.000; Power break 3=85.000; Dot size=9"
e2e_view_shot colours_after
pixels dots "$ART/colours_after.png" "$ART/colours_after.probe" "$DAT" 95 90 85 9
e2e_pass "Colours/Size: spin, the dot size refused, then 95/90/85 and 9 written and drawn"

RECSET="VELDOR - Record settings"
e2e_open_dialog alt+r e "$RECSET" "Configure record settings"
e2e_shot recset_dialog
e2e_key Down Return
e2e_shot recset_refused
e2e_refused "$RECSET" "A distance recording interval and TZR mode are incompatible.*"
e2e_expect_ini General "Record Interval in Meters="
# Time, 0 seconds, "abc" metres, autosave every 7 minutes, averaging, the
# channel labels: the fourth keeps its first 31 characters.
e2e_step "Up Tab :0 Tab :abc Tab space Tab :7 Tab space Tab :Alpha Tab :Beta Tab :Gamma Tab :DeltaDeltaDeltaDeltaDeltaDeltaDelta" \
  "window=$RECSET; control=Edit,1764,DeltaDeltaDeltaDeltaDeltaDeltaD"
e2e_step Return "nowindow=$RECSET" "[General] Record Interval in Meters=0; Record Interval Seconds=1; Record Interval Meters=1; Autosave Enable=1; Autosave Interval=7; Averaging=1"
e2e_view_shot recset_after
pixels listing-changed "$ART/colours_after.png" "$ART/recset_after.png" "$ART/opened.probe" 0.6 1.0 0 1
e2e_pass "Record settings: TZR refusal, then 1, 1, 1, 7, 1 written and the labels drawn"

PREFS="VELDOR - Preferences"
before_rows="$(pixels_out row-height "$ART/recset_after.png" "$ART/recset_after.probe")"
e2e_open_dialog alt+f p "$PREFS" "Set preferences"
e2e_shot prefs_dialog
e2e_step "Down Tab :28" "window=$PREFS; control=Edit,1774,28"
e2e_step "Tab Tab :20 Tab Tab Tab space" "window=$PREFS"
e2e_step Return "nowindow=$PREFS; caption=VELDOR [ $(e2e_winpath "$DAT") ]" \
  "[Listing] FontSize=28; [Plot] FontSize=20; [Chart] FontSize=12; [General] Show Path=1"
# The probe cannot read a list of another program: the Listing's name is the
# font that Down chose, the Plot's the stored "Arial" if it is installed and
# otherwise empty, since then nothing was selected.
listing_font="$(e2e_ini_value Listing FontName)"
plot_font="$(e2e_ini_value Plot FontName)"
[ -n "$listing_font" ] && [ "$listing_font" != "$plot_font" ] ||
  e2e_fail "Down chose no other Listing font: '$listing_font', Plot '$plot_font'"
case "$plot_font" in "" | Arial) ;; *) e2e_fail "the Plot's font became '$plot_font'" ;; esac
e2e_view_shot prefs_after
after_rows="$(pixels_out row-height "$ART/prefs_after.png" "$ART/prefs_after.probe")"
[ "$after_rows" -gt "$before_rows" ] || e2e_fail "the Listing's rows did not grow: $before_rows, then $after_rows pixels"
e2e_pass "Preferences: '$listing_font' 28, Plot 20, full path; header $before_rows -> $after_rows pixels"

e2e_quit
