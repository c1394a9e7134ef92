#!/usr/bin/env python3
"""The survey of the views scenarios, and the pixel facts their screenshots must show. Commands:

  make OUT.DAT [COUNT]                        the test survey of veldor_dat (300 records)
  plot|listing|chart SHOT.png PROBE.txt DAT [--channel N] [--zoom io..] [--cross I] [--mark I]
      what the file says the view must draw, a line per fact; exit 1 at the first that does not hold
  listing-row PROBE.txt SHOT.png ROW TOP|end  screen y, x and record of table row ROW
  deleted DAT SAVED INDEX                     SAVED is DAT less record INDEX, its tags moved
  suspended SHOT.png PROBE.txt 1|0            the Plot's suspension text and no dots (1), or dots (0)
  tags DAT                                    the tags of DAT, "RECORD:TEXT" a line (from 0)
  print listing DAT METRICS PAGE_TXT... [--format DEG|DMS_PM_RAW] [--header 0|1]
      Ghostscript's text of each page holds every line it must, in order, words compared, and no other
  print plot DAT METRICS PAGE.ppm --mode entire|displayed|specify [--probe PROBE]
      the page at 127 dpi (5 pixels a mm) has a 1 mm dot in channel 1's band colour within half a
      mm of where the scale puts each record of the map area, and nothing else (METRICS: the printer's)

Every expectation comes from the file, the probe's window sizes and the manual's arithmetic.
"""
import datetime
import os
import subprocess
import sys
from collections import Counter

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
from veldor_dat import TAGGED, band, make, position, read, reading, value  # noqa: E402,F401  (the scenarios take them from here)

BAND_RGB = [(0, 0, 255), (0, 255, 0), (255, 0, 0), (0, 0, 0)]
GPS_RGB = {0x10: (128, 0, 0), 0x14: (0, 128, 0), 0x34: (0, 0, 128), 0x04: (0, 128, 0)}
MARK_RGB = (192, 0, 0)                    # the dotted cross hair and chart mark, 0x000000C0
CURVE_RGB = (0, 0, 192)                   # the chart curve, 0x00C00000


def read_records(path):
    """(flags, ch, lat, lon) of each record of a v1.4 file."""
    return [(r.flags, r.ch, r.lat, r.lon) for r in read(path).records]


class Shot:
    def __init__(self, path):
        ppm = subprocess.run(["convert", path, "-strip", "ppm:-"], check=True, capture_output=True).stdout
        parts = ppm.split(maxsplit=4)
        self.w, self.h, self.px = int(parts[1]), int(parts[2]), parts[4]

    def at(self, x, y):
        i = (y * self.w + x) * 3
        return tuple(self.px[i:i + 3])


def client(probe, cls):
    for line in open(probe):
        if line.startswith("client=" + cls + "|"):
            return [int(v) for v in line.strip().split("|")[1].split(",")]
    sys.exit(f"no {cls} in {probe}")


def fact(ok, text):
    print(("ok    " if ok else "WRONG ") + text)
    if not ok:
        sys.exit(1)


def zoom_auto(lats, lons, width, height):
    """The centre and the ms of arc a pixel that Zoom Auto gives a plot area of width by height."""
    dlat, dlon = max(lats) - min(lats), max(lons) - min(lons)
    m = max(dlat // height, dlon // width)
    return min(lats) + dlat // 2, min(lons) + dlon // 2, max(m + m // 3, 1)


def plot_pixels(recs, w, h, zooms):
    """Pixel of each record after Zoom Auto, then the zooms ("i" in, "o" out)."""
    left, top, right, bottom = 1, 34, w - 1, h - 1
    clat, clon, scale = zoom_auto([r[2] for r in recs], [r[3] for r in recs], right - left, bottom - top)
    for z in zooms:  # far from the world scale, so Zoom Out only doubles
        scale = max(scale // 2, 1) if z == "i" else scale * 2
    cx, cy = left + (right - left) // 2, top + (bottom - top) // 2
    pix = [(cx + int((lon - clon) / scale), cy - int((lat - clat) / scale)) for _, _, lat, lon in recs]
    return pix, (left, top, right, bottom)


def check_plot(shot, probe, path, channel, zooms, cross):
    s, recs = Shot(shot), read_records(path)
    ox, oy, w, h = client(probe, "Veldor_Plot")
    pix, area = plot_pixels(recs, w, h, zooms)
    d, checked = 5, 0
    hair = pix[cross] if cross is not None else (-99, -99)
    for i in range(0, len(recs), 13):
        x, y = pix[i]
        if (not (area[0] + d <= x < area[2] - d and area[1] + d <= y < area[3] - d)
                or abs(x - hair[0]) <= d or abs(y - hair[1]) <= d):
            continue  # near the edge, or under the cross hair
        ch = recs[i][1]
        if channel == 4:  # a square per channel: 1 top left, 2 top right, 3 bottom left, 4 bottom right
            want = {(x + dx, y + dy): BAND_RGB[band(ch[k])] for k, (dx, dy) in enumerate([(-2, -2), (2, -2), (-2, 2), (2, 2)])}
        else:
            raw = max(ch) if channel == 5 else ch[channel]
            want = {(x, y): BAND_RGB[band(raw)], (x - 2, y + 2): BAND_RGB[band(raw)],
                    (x + 3, y): (255, 255, 255)}
        for (px, py), rgb in want.items():
            fact(s.at(ox + px, oy + py) == rgb,
                 f"plot record {i + 1} at ({px}, {py}): {s.at(ox + px, oy + py)}, expected {rgb}")
        checked += 1
    fact(checked >= 5, f"{checked} records checked in the plot")
    fact(s.at(ox + 2, oy + 2) == (192, 192, 192), "the button strip is grey")
    if cross is not None:
        x, y = pix[cross]
        x = min(max(x, area[0]), area[2] - 1)
        column = sum(s.at(ox + x, oy + yy) == MARK_RGB for yy in range(area[1], area[3]))
        fact(column >= (area[3] - area[1]) // 4, f"cross hair on x {x}: {column} dotted pixels")


def listing_metrics(s, probe):
    ox, oy, w, h = client(probe, "Veldor_Listing")
    # The band's colour from the top down, in the column that the header's text spares most.
    band = (128, 255, 255)
    band_h = max(next(y for y in range(h) if s.at(ox + x, oy + 1 + y) != band) for x in range(2, w - 2))
    return ox, oy, w, h, band_h  # the band holds rows 1 .. h + 1 of the client: band_h = h + 1


def check_listing(shot, probe, path):
    s, recs = Shot(shot), read_records(path)
    ox, oy, w, h, band_h = listing_metrics(s, probe)
    ch = band_h - 1
    fact(ch >= 8, f"header band RGB(128, 255, 255), {band_h} pixels high: row height {ch}")
    fact(s.at(ox + 5, oy + h - 4) == (192, 192, 192), "live row band grey")
    x2, x4 = w * 2 // 10, w * 4 // 10
    for r in range(4):
        top, bottom = (r + 1) * ch + 3, (r + 2) * ch
        seen = {s.at(ox + x, oy + y) for x in range(x2 + 1, x4 - 1) for y in range(top, bottom)}
        want = GPS_RGB[recs[r][0] & 0x34]
        fact(want in seen and not (seen & (set(GPS_RGB.values()) - {want})), f"row {r + 1} latitude in {want}")
        grey = {s.at(ox + x, oy + y) for x in range(w * 6 // 10 + 1, w * 7 // 10 - 1) for y in range(top, bottom)}
        live = recs[r][0] & 0x10
        fact(((0, 0, 0) in grey) == bool(live), f"row {r + 1} readings {'black' if live else 'grey'}")
    star = {s.at(ox + x, oy + y) for x in range(2, 8) for y in range(ch + 3, 2 * ch)}
    # The star is small and its edges are smoothed: any dark-red tint will do.
    fact(any(r - g >= 60 and abs(g - b) <= 8 for r, g, b in star), "tag star on record 1")


def listing_row(probe, shot, row, top):
    s = Shot(shot)
    ox, oy, w, h, band_h = listing_metrics(s, probe)
    ch = band_h - 1
    if top == "end":  # the top row after End: the last record stands in the last whole row
        top = 301 - (h - 2 * ch - 4) // ch
    print(oy + ch + 2 + row * ch + ch // 2, ox + w // 2, int(top) + row)


def check_deleted(path, saved, index):
    before, after = read_records(path), read_records(saved)
    fact(after == before[:index] + before[index + 1:], f"{len(after)} records: record {index + 1} gone")
    want = [t - (t > index) for t in TAGGED if t != index]
    fact([r for r, _ in read(saved).tags] == want, f"tags on {want}")


def check_suspended(shot, probe, suspended):
    s = Shot(shot)
    ox, oy, w, h = client(probe, "Veldor_Plot")
    dots = {s.at(ox + x, oy + y) for x in range(2, w - 2) for y in range(35, h - 2)} & set(BAND_RGB[:3])
    cy = 34 + (h - 35) // 2
    text = sum(s.at(ox + x, oy + y) == (0, 0, 0) for x in range(2, w - 2) for y in range(cy - 20, cy))
    fact(not dots and text > 20 if suspended else bool(dots),
         f"suspended: no dots, {text} text pixels above the centre" if suspended else f"dots in {sorted(dots)}")


def check_chart(shot, probe, path, channel, mark):
    s, recs = Shot(shot), read_records(path)
    ox, oy, w, h = client(probe, "Veldor_Chart")
    axis = [x for x in range(0, w // 2) if s.at(ox + x, oy + 60) == (0, 0, 0)]
    fact(len(axis) >= 2, f"Y axis found at x {axis[:2]}")
    left, right = axis[-1] + 1, w - 10
    base = [y for y in range(43, h) if s.at(ox + left + 3, oy + y) == (0, 0, 0)]
    fact(len(base) >= 2, f"X axis found at y {base[:2]}")
    bottom = base[0] - 1
    hits = Counter(r[1][channel] for r in recs)
    scale, peak = (right - left) / 100.0, max(hits.values())
    marked = recs[mark][1][channel] if mark is not None else None
    for raw in sorted(set(hits) - {marked}):
        x = left + int(value(raw) * scale)
        y = bottom - int(hits[raw] * (bottom - 43) / peak)
        near = {s.at(ox + xx, oy + yy) for xx in range(x - 1, x + 2) for yy in range(y - 1, y + 2)}
        fact(CURVE_RGB in near, f"bin {raw} ({hits[raw]} hits) at ({x}, {y})")
    if mark is not None:
        x = left + int(value(recs[mark][1][channel]) * scale)
        column = sum(CURVE_RGB != s.at(ox + xx, oy + yy) == MARK_RGB for xx in (x - 1, x, x + 1)
                     for yy in range(43, bottom))
        fact(column >= (bottom - 43) // 4, f"location mark of record {mark + 1} at x {x}: {column} pixels")


def metrics(path):
    return {k: int(v) for k, v in (line.strip().split("=") for line in open(path) if "=" in line)}


def record_line(r, fmt):
    """DEG: degrees, N/S and E/W, calibrated readings; else signed degrees minutes seconds, raw readings."""
    latlong, sign, decimals = (1, 1, 1) if fmt == "DEG" else (3, 2, -1)
    words = [position(r.lat, "lat", latlong, sign), position(r.lon, "lon", latlong, sign)]
    words += [reading(c, decimals) for c in r.ch] + (["%d" % r.acc] if r.flags & 0x08 else [])
    return " ".join(words)


def check_printed_listing(dat, met, pages, fmt, header):
    survey = read(dat)
    rows = survey.records
    per_page = met["vertres"] // met["lineheight"] - 1
    want = [["VELDOR Listing"]]
    first = 5
    if header:
        started = datetime.datetime.utcfromtimestamp(survey.start).strftime("%a %b %d %H:%M:%S %Y")
        want[0] += (["Recording started: " + started, "Printed: *", "Data filename: " + dat.rsplit("/", 1)[-1]]
                    + ["Ch%d cal. filename: %s" % (c + 1, survey.names[c]) for c in range(4)]
                    + ["Records taken: %d" % len(rows)])
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
            if not (g.startswith("Printed: ") if w == "Printed: *" else g == " ".join(w.split())):
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
    lat_s = lon_s = max(dlat // (pt - pb), dlon // (pr - pl), 1)  # "Maintain aspect ratio of 1:1" is on
    if mode != "specify":
        pr, pt = width, height
        pl, pb = (width - dlon // lon_s) // 2, (height - dlat // lat_s) // 2
    return (top, left, bottom, right), (pl, pt, pr, pb), lat_s, lon_s, height


def check_printed_plot(dat, met, ppm, mode, probe):
    rows = read(dat).records
    (top, left, bottom, right), (pl, pt, pr, pb), lat_s, lon_s, height = placement(rows, met, mode, probe)
    page = Shot(ppm)
    w, h, px, at = page.w, page.h, page.px, page.at
    allowed, dots = set(), 0
    for i, (_, _, ch, lat, lon, _) in enumerate(rows):
        x, y = pl + int((lon - left) / lon_s), pb + int((lat - bottom) / lat_s)
        if not (left <= lon <= right and bottom <= lat <= top and pl <= x <= pr and pb <= y <= pt):
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
    pos, opt, words = [], {}, iter(argv[2:])  # the words after the command, and "--name value"
    for word in words:
        if word.startswith("--"):
            opt[word] = next(words)
        else:
            pos.append(word)
    number = lambda name: int(opt[name]) if name in opt else None  # noqa: E731
    commands = {
        "make": lambda: make(pos[0], int(pos[1]) if len(pos) > 1 else 300),
        "plot": lambda: check_plot(*pos[:3], int(opt["--channel"]), opt.get("--zoom", ""), number("--cross")),
        "listing": lambda: check_listing(*pos[:3]),
        "listing-row": lambda: listing_row(pos[0], pos[1], int(pos[2]), pos[3]),
        "deleted": lambda: check_deleted(pos[0], pos[1], int(pos[2])),
        "suspended": lambda: check_suspended(pos[0], pos[1], int(pos[2])),
        "tags": lambda: print("".join("%d:%s\n" % t for t in read(pos[0]).tags), end=""),
        "chart": lambda: check_chart(*pos[:3], int(opt["--channel"]), number("--mark")),
        "print": lambda: check_printed_listing(pos[1], metrics(pos[2]), pos[3:], opt.get("--format", "DEG"),
                                               opt.get("--header", "1") == "1") if pos[0] == "listing"
        else check_printed_plot(pos[1], metrics(pos[2]), pos[3], opt["--mode"], opt.get("--probe")),
    }
    commands.get(argv[1], lambda: sys.exit(__doc__))()


if __name__ == "__main__":
    main(sys.argv)
