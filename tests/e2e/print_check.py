#!/usr/bin/env python3
"""What the printed pages of a survey must hold, checked on the printer's output.

  print_check.py listing DAT METRICS PAGE_TXT... [--format DEG|DMS_PM_RAW] [--header 0|1]
      Ghostscript's text of each page holds every line it must, in order (words
      compared: the text device spaces the tab stops its own way), and no other.
  print_check.py plot DAT METRICS PAGE.ppm --mode entire|displayed|specify [--probe PROBE]
      The page at 127 dpi (5 pixels a mm) has a 1 mm dot in the band colour of
      channel 1 within half a mm of where the scale puts each record of the map
      area, and no other pixel marked.

METRICS is the file printer's report. Everything comes from the survey file
and the manual's arithmetic, nothing from the program.
"""
import datetime
import sys

from views_survey import BAND_RGB, Shot, arguments, band, client, fact, read, zoom_auto
from veldor_dat import position, reading


def metrics(path):
    return {k: int(v) for k, v in (line.strip().split("=") for line in open(path) if "=" in line)}


def record_line(r, fmt):
    """DEG: degrees with N/S and E/W, calibrated readings; else signed
    degrees minutes seconds and raw readings."""
    latlong, sign, decimals = (1, 1, 1) if fmt == "DEG" else (3, 2, -1)
    words = [position(r.lat, "lat", latlong, sign), position(r.lon, "lon", latlong, sign)]
    words += [reading(c, decimals) for c in r.ch] + (["%d" % r.acc] if r.flags & 0x08 else [])
    return " ".join(words)


def check_listing(dat, met, pages, fmt, header):
    survey = read(dat)
    rows = survey.records
    per_page = met["vertres"] // met["lineheight"] - 1
    want = [["VELDOR Listing"]]
    first = 5
    if header:
        started = datetime.datetime.utcfromtimestamp(survey.start).strftime("%a %b %d %H:%M:%S %Y")
        want[0] += ["Recording started: " + started, "Printed: *",
                    "Data filename: " + dat.rsplit("/", 1)[-1]]
        want[0] += ["Ch%d cal. filename: %s" % (c + 1, survey.names[c]) for c in range(4)]
        want[0] += ["Records taken: %d" % len(rows)]
        first = 16
    # The first page's records from line first, the others' from line 3.
    lines, n = [record_line(r, fmt) for r in rows], max(per_page - first + 1, 1)
    want[0] += lines[:n]
    want += [lines[k:k + per_page - 2] for k in range(n, len(lines), per_page - 2)]
    fact(len(pages) == len(want), f"{len(pages)} pages printed, {len(want)} expected "
         f"({per_page} lines a page, first record on line {first})")
    for p, (page, lines) in enumerate(zip(pages, want)):
        got = [" ".join(l.split()) for l in open(page, encoding="latin-1") if l.strip()]
        fact(len(got) == len(lines), f"page {p + 1}: {len(got)} lines, {len(lines)} expected")
        for n, (g, w) in enumerate(zip(got, lines)):
            ok = g.startswith("Printed: ") if w == "Printed: *" else g == " ".join(w.split())
            if not ok:
                fact(False, f"page {p + 1} line {n + 1}: '{g}', expected '{w}'")
    print(f"ok    {len(rows)} records on {len(pages)} pages, every line as expected")


def placement(rows, met, mode, probe):
    """Map area, page rectangle in tenths of a mm (y up) and scales, as the manual gives them."""
    width, height = met["horzsize"] * 10, met["vertsize"] * 10
    if mode == "specify":  # the area the scenario types
        top, left, bottom, right = 185420000, -3600000, 185400000, -3570000
        page = [20, 30, 180, 250]
    else:
        page = [0, 0, width // 10, height // 10]
        lats, lons = [r.lat for r in rows], [r.lon for r in rows]
        top, bottom, left, right = max(lats), min(lats), min(lons), max(lons)
        if mode == "displayed":  # the plot area under the button strip, after Zoom Auto
            _, _, w, h = client(probe, "Veldor_Plot")
            clat, clon, scale = zoom_auto(lats, lons, w - 2, h - 35)
            left, right = clon - (w - 2) * scale // 2, clon + (w - 2) * scale // 2
            bottom, top = clat - (h - 35) * scale // 2, clat + (h - 35) * scale // 2
    pl, pt, pr, pb = (v * 10 for v in page)
    pt, pb = height - pt, height - pb
    dlat, dlon = top - bottom, right - left
    lat_s = max(dlat // (pt - pb), 1)
    lon_s = max(dlon // (pr - pl), 1)
    lat_s = lon_s = max(lat_s, lon_s)  # "Maintain aspect ratio of 1:1" is on
    if mode != "specify":
        pr, pt = width, height
        pl, pb = (width - dlon // lon_s) // 2, (height - dlat // lat_s) // 2
    return (top, left, bottom, right), (pl, pt, pr, pb), lat_s, lon_s, height


def check_plot(dat, met, ppm, mode, probe):
    rows = read(dat).records
    (top, left, bottom, right), (pl, pt, pr, pb), lat_s, lon_s, height = placement(rows, met, mode, probe)
    page = Shot(ppm)
    w, h, px, at = page.w, page.h, page.px, page.at
    allowed, dots = set(), 0
    for i, (_, _, ch, lat, lon, _) in enumerate(rows):
        if not (left <= lon <= right and bottom <= lat <= top):
            continue
        x, y = pl + int((lon - left) / lon_s), pb + int((lat - bottom) / lat_s)
        if not (pl <= x <= pr and pb <= y <= pt):
            continue
        # A logical unit is a tenth of the printer's whole millimetres of
        # HORZSIZE and VERTSIZE across its HORZRES and VERTRES dots.
        cx = x * met["horzres"] / (met["horzsize"] * 10.0) * 127 / met["logpixelsx"]
        cy = (height - y) * met["vertres"] / (met["vertsize"] * 10.0) * 127 / met["logpixelsy"]
        want = BAND_RGB[band(ch[0])]
        box = [(xx, yy) for xx in range(int(cx) - 5, int(cx) + 7) for yy in range(int(cy) - 5, int(cy) + 7)]
        allowed.update(box)
        if not (6 <= cx < w - 6 and 6 <= cy < h - 6):
            continue  # the truncated scale can put the outer dots off the paper
        inked = [(xx, yy, at(xx, yy)) for xx, yy in box if at(xx, yy) != (255, 255, 255)]
        mx = sum(p[0] for p in inked) / max(len(inked), 1) + 0.5  # pixel centres
        my = sum(p[1] for p in inked) / max(len(inked), 1) + 0.5
        colours = {p[2] for p in inked}
        if colours != {want} or abs(mx - cx) > 2.5 or abs(my - cy) > 2.5 or not 16 <= len(inked) <= 49:
            fact(False, f"record {i + 1}: dot {colours} of {len(inked)} pixels at ({mx:.1f}, {my:.1f}), "
                        f"expected {want} at ({cx:.1f}, {cy:.1f}) px")
        dots += 1
    white, stray = b"\xff" * (w * 3), []
    for y in range(h):
        if px[y * w * 3:(y + 1) * w * 3] != white:
            stray += [(x, y) for x in range(w) if at(x, y) != (255, 255, 255) and (x, y) not in allowed]
    fact(not stray, f"nothing else on the page ({len(stray)} stray pixels, first {stray[:3]})")
    fact(dots >= 10, f"{dots} dots where the scale puts them (scale {lat_s} ms of arc a tenth of a mm)")


def main(argv):
    pos, opt = arguments(argv)
    if argv[1] == "listing":
        check_listing(pos[0], metrics(pos[1]), pos[2:], opt.get("--format", "DEG"), opt.get("--header", "1") == "1")
    elif argv[1] == "plot":
        check_plot(pos[0], metrics(pos[1]), pos[2], opt["--mode"], opt.get("--probe"))
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main(sys.argv)
