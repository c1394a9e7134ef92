#!/usr/bin/env python3
"""veldor-export's tests. Args: EXE formats|coverage
formats: the exports read back by GDAL and xmllint against the survey parsed with struct; damaged
data files refused (message, status 2, no output); usage for a wrong option.
coverage: against a checker of its own: two surveys made here (one with a coverage hole, one
under-sampled), read back from the .DAT and judged window by window and tile by tile; the tile files
read by GDAL; the report rendered by headless Chromium (pixels, A4 PDF text)."""
import csv, math, os, random, re, subprocess, sys, tempfile, time
from statistics import NormalDist

TESTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "..", "tests")
sys.path[:0] = [TESTS, os.path.join(TESTS, "e2e")]
import veldor_dat  # noqa: E402  (writes and reads the .DAT; the default curve and its bands)
from views_survey import BAND_RGB, Shot, fact  # noqa: E402  (the pixels of a PNG)

EXE, DATAFILES = sys.argv[1], os.path.join(TESTS, "data", "datafiles")
BANDS = ["High: above 80", "Mid: above 60", "Low: above 40", "None: 40 or below"]
CSV = ["-oo", "X_POSSIBLE_NAMES=longitude", "-oo", "Y_POSSIBLE_NAMES=latitude"]
LAT0, LON0, MAS_PER_M = 185400000, -3600000, 3600000 / (6371000 * math.pi / 180)
HOLE = (1, 1), (2, 2)          # tiles x 1..2, y 1..2 of 100 m: 30 dB down
TX = (-150.0, -100.0)          # the transmitter, metres from the route's corner
ARGS = ["--threshold", "50", "--frequency", "300", "--tile", "100"]


def run(*args):
    return subprocess.run([EXE, *args], capture_output=True, text=True)


def ogr(path, *args):
    """ogrinfo's text, its feature count per layer, and the fields, point and layer of the first feature."""
    out = subprocess.run(["ogrinfo", "-ro", "-al", *args, path], capture_output=True, text=True).stdout
    counts = dict((k, int(v)) for k, v in re.findall(r"Layer name: (.*)\n(?:.*\n)*?Feature Count: (\d+)", out))
    point = re.search(r"POINT \(([-\d.e]+) ([-\d.e]+)\)", out)
    layer = re.search(r"OGRFeature\((.*)\):", out)
    return (counts, dict(re.findall(r"^  (\w+) \(\w+\) = (.*)$", out, re.M)),
            point and (float(point[1]), float(point[2])), layer and layer[1])


def near(point, rec):
    return point is not None and abs(point[0] - rec.lon / 3.6e6) < 1e-7 and abs(point[1] - rec.lat / 3.6e6) < 1e-7


def formats(tmp):
    dat, out = os.path.join(tmp, "survey.DAT"), lambda fmt: os.path.join(tmp, "survey." + fmt)
    veldor_dat.make(dat, 300)
    survey = veldor_dat.read(dat)
    recs, tags = survey.records, survey.tags
    bands = [veldor_dat.band(r.ch[0]) for r in recs]
    want = {name: bands.count(b) for b, name in enumerate(BANDS)}
    want["Tags"] = len(tags)
    for fmt, args, expected in (("csv", CSV, [300]), ("geojson", [], [300]), ("kml", [], want),
                                ("gpx", [], {"waypoints": len(tags), "track_points": 300})):
        r = run(dat, "--format", fmt)
        counts = ogr(out(fmt), "-so", *args)[0]
        got = list(counts.values()) if isinstance(expected, list) else {k: counts.get(k) for k in expected}
        fact(r.returncode == 0 and got == expected and not os.path.exists(out(fmt) + ".part"),
             f"{fmt}: exit {r.returncode}, feature counts {got}, expected {expected}")
    for i in (0, 137, 299):
        rec, value = recs[i], veldor_dat.reading(recs[i].ch[0], 3)
        _, f, p, _ = ogr(out("csv"), "-where", f"index='{i + 1}'", *CSV)
        fact(near(p, rec) and f.get("ch1_value") == value and f.get("ch4_raw") == str(rec.ch[3]) and
             f.get("gps_fix") == str(int(rec.flags & 4 != 0)), f"csv record {i + 1}: {p} {f.get('ch1_value')}")
        _, f, p, _ = ogr(out("geojson"), "-where", f"index={i + 1}")
        fact(near(p, rec) and float(f.get("ch1_value", "nan")) == float(value) and f.get("ch3_raw") == str(rec.ch[2]),
             f"geojson record {i + 1}: {p} {f.get('ch1_value')}")
        _, f, p, layer = ogr(out("kml"), "-where", f"Name='{i + 1}'")
        fact(near(p, rec) and layer == BANDS[bands[i]], f"kml record {i + 1}: {p} in '{layer}'")
        _, f, p, _ = ogr(out("gpx"), "-sql", f"SELECT * FROM track_points WHERE track_seg_point_id={i}")
        when = time.strftime("%Y/%m/%d %H:%M:%S+00", time.gmtime(rec.time))
        fact(near(p, rec) and f.get("veldor_ch2_raw") == str(rec.ch[1]) and f.get("time") == when,
             f"gpx point {i}: {p} {f.get('time')}")
    index, text = tags[2]
    fact(near(ogr(out("kml"), "-where", f"Name='{text}'")[2], recs[index]), f"kml tag '{text}' at record {index + 1}")
    r = subprocess.run(["xmllint", "--noout", out("kml"), out("gpx")], capture_output=True, text=True)
    fact(r.returncode == 0, "xmllint accepts the KML and GPX " + r.stderr.strip())
    fact("Records: 300\n" in run(dat, "--summary").stdout, "summary: 300 records")

    # Which files are damaged is the loader's, tested with the core: here its refusal reaches the user.
    for name, said in (("wrong_magic.dat", "Incorrect format"), ("truncated_v1_4.dat", "File corrupted")):
        r = run(os.path.join(DATAFILES, name), "--format", "geojson", "-o", os.path.join(tmp, "bad.geojson"))
        left = [n for n in os.listdir(tmp) if n.startswith("bad.")]
        fact(r.returncode == 2 and re.search(r"File '.*%s'\n%s" % (re.escape(name), said), r.stderr) and not left,
             f"{name}: exit {r.returncode}, {r.stderr.strip()!r}, files left {left}")
    r = run(dat, "--format", "shp")
    fact(r.returncode == 2 and r.stderr.splitlines()[-1].startswith("usage: veldor-export SURVEY.DAT"),
         f"--format shp: exit {r.returncode}, usage line")


def make(path, hole, sparse):
    """A lawn-mower route of 17 rows 24 m apart, 390 m long, a sample every 0.5 m (when sparse: 2 m on
    the northern rows, and driven from the north-east corner), every 97th record without a fix;
    channel 1 falls with distance and fades (Rayleigh); inside the hole it is 30 dB lower."""
    rnd, rows = random.Random(7), []
    lat_m, lon_m = 1 / MAS_PER_M, math.cos(math.radians(LAT0 / 3.6e6)) / MAS_PER_M
    path_pts = [(x, r * 24.0) for r in range(17) for x in ((0.0, 390.0) if r % 2 == 0 else (390.0, 0.0))]
    path_pts = path_pts[::-1] if sparse else path_pts
    for (x0, y0), (x1, y1) in zip(path_pts, path_pts[1:]):
        length = math.hypot(x1 - x0, y1 - y0)
        step = 2.0 if sparse and y0 > 190 else 0.5
        for k in range(int(length / step)):
            east, north = x0 + (x1 - x0) * k * step / length, y0 + (y1 - y0) * k * step / length
            level = 95 - 0.06 * math.hypot(east - TX[0], north - TX[1])
            if hole and all(HOLE[0][i] <= int(p // 100) <= HOLE[1][i] for i, p in enumerate((east, north))):
                level -= 30
            fading = 10 * math.log10(max(rnd.expovariate(1.0), 1e-6))
            raw = max(0, min(255, round((level + fading) * 2.55)))
            fix = len(rows) % 97 != 50
            rows.append((0x14 if fix else 0x10, 0, (raw, 255 - raw, 128, 10),
                         LAT0 + round(north / lat_m) if fix else 0, LON0 + round(east / lon_m) if fix else 0,
                         1700000000 + len(rows)))
    tags = [(0, b"Start"), (len(rows) // 2, b"Half way <& \"mast\">"), (len(rows) - 1, b"End")]
    veldor_dat.write(path, rows, tags, [b"Mast", b"Inverse", b"Flat", b"Low"], seconds=1)


def quantile(v, q):
    r = q * (len(v) - 1)
    lo = math.floor(r)
    return v[-1] if lo + 1 >= len(v) else v[lo] + (v[lo + 1] - v[lo]) * (r - lo)


def judge(paths, linear=False, window=40 * 299.792458 / 300, tile=100.0, threshold=50.0, conf=0.9):
    """Windows and tiles of the first survey (on the grid of all): {tile: (windows, samples,
    undersampled, median, p10, pass)}, the number of under-sampled windows, reliability, bound."""
    surveys = [[r for r in veldor_dat.read(p).records if r.flags & 4] for p in paths]
    every = [r for s in surveys for r in s]
    south, west = min(r.lat for r in every), min(r.lon for r in every)
    m_n = 6371 * 1000.0 * math.pi / 180.0 / 3600000.0
    m_e = m_n * math.cos(sum(r.lat for r in every) / len(every) / 3600000.0 * math.pi / 180.0)
    windows, path, last = {}, 0.0, None
    for r in surveys[0]:
        e, n = (r.lon - west) * m_e, (r.lat - south) * m_n
        path, last = path + (0 if last is None else math.hypot(e - last[0], n - last[1])), (e, n)
        windows.setdefault(math.floor(path / window), []).append((e, n, veldor_dat.value(r.ch[0])))
    tiles = {}
    for w in windows.values():
        key = (math.floor(sum(p[0] for p in w) / len(w) / tile), math.floor(sum(p[1] for p in w) / len(w) / tile))
        mean = sum(p[2] for p in w) / len(w) if linear else 10 * math.log10(sum(10 ** (p[2] / 10) for p in w) / len(w))
        tiles.setdefault(key, []).append((mean, len(w)))
    out = {}
    for key, ws in tiles.items():
        means = sorted(m for m, _ in ws)
        med = quantile(means, 0.5)
        out[key] = (len(ws), sum(n for _, n in ws), sum(n < 36 for _, n in ws), med, quantile(means, 0.1),
                    (quantile(means, 0.1) if linear else med) >= threshold)
    k, n = sum(t[5] for t in out.values()), len(out)
    z, p = NormalDist().inv_cdf(conf), k / n
    bound = (p + z * z / (2 * n) - z * math.sqrt(p * (1 - p) / n + z * z / (4 * n * n))) / (1 + z * z / n)
    return out, sum(len(w) < 36 for w in windows.values()), 100 * p, 100 * bound


def compare_numbers(name, path, *others, linear=False):
    """The exporter's tiles-csv and reliability statement against the judge's; linear: values
    averaged as they stand and tiles judged by their p10."""
    tiles, under, rel, bound = judge([path, *others], linear)
    out = path + ".tiles.csv"
    extra = [a for o in others for a in ("--compare", o)] + (["--linear", "--statistic", "p10"] if linear else [])
    r = run(path, "--format", "tiles-csv", "-o", out, *ARGS, *extra)
    rows = {(int(t["tile_x"]), int(t["tile_y"])): t for t in csv.DictReader(open(out, newline=""))}
    said = re.search(r"Area reliability ([\d.]+) % \(lower 90 % bound ([\d.]+) %\)", r.stdout)
    said = said and (float(said[1]), float(said[2]))
    fact(r.returncode == 0 and set(rows) == set(tiles), f"{name}: {len(rows)} tiles, expected {len(tiles)}")
    bad = [k for k, t in tiles.items() if k in rows and not (
        (int(rows[k]["windows"]), int(rows[k]["samples"]), int(rows[k]["undersampled"]), rows[k]["pass"] == "1")
        == (t[0], t[1], t[2], t[5]) and abs(float(rows[k]["median"]) - t[3]) <= 0.05
        and abs(float(rows[k]["p10"]) - t[4]) <= 0.05)]
    fact(not bad, f"{name}: every tile's counts, median, p10 and pass agree ({bad[:3]} differ)")
    fact(said is not None and abs(said[0] - rel) <= 0.05 and abs(said[1] - bound) <= 0.05,
         f"{name}: reliability {said}, expected {rel:.2f} % bound {bound:.2f} %")
    return tiles, under, rows


def browser(report, shot, pdf, tiles, hole_tiles):
    html = open(report, encoding="utf-8").read()
    chromium = ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--user-data-dir=" + shot + ".profile"]
    subprocess.run([*chromium, "--hide-scrollbars",
                    f"--screenshot={shot}", "--window-size=760,2600", "file://" + report], capture_output=True)
    s = Shot(shot)
    w, h = [int(v) for v in re.search(r'<svg class="map"[^>]*width="(\d+)" height="(\d+)"', html).groups()]
    frame = (80, 80, 80)
    tops = [y for y in range(s.h) for x in range(0, s.w - w + 1, 7)
            if s.at(x, y) == frame and all(s.at(x + d, y) == frame for d in (0, w // 3, w // 2))][:1]
    fact(bool(tops), "the route map's frame found in the PNG")
    y0 = tops[0]
    x0 = next(x for x in range(s.w) if s.at(x, y0) == frame)
    route = html[html.index('<g id="route">'):html.index('<g id="tags">')]
    dots = [(float(x), float(y)) for x, y in re.findall(r'cx="([\d.]+)" cy="([\d.]+)" r="2.5"', route)]
    tag_dots = [(float(x), float(y)) for x, y in re.findall(r'class="tag" cx="([\d.]+)" cy="([\d.]+)"', html)]
    fixed = [r for r in veldor_dat.read(report[:-5] + ".DAT").records if r.flags & 4]
    seen = set()
    for i in range(0, len(dots), 37):
        px, py = int(dots[i][0]) + 0.5, int(dots[i][1]) + 0.5  # a pixel's centre, in the SVG's own terms
        near = [(j, math.hypot(dots[j][0] - px, dots[j][1] - py)) for j in range(max(0, i - 80), min(len(dots), i + 80))]
        cover = [j for j, d in near if d <= 1.3][-1]  # the last dot over the whole pixel, and any later one at its edge
        bands = {veldor_dat.band(fixed[j].ch[0]) for j, d in near if j >= cover and d < 3.7}
        if len(bands) > 1 or any(math.hypot(tx - px, ty - py) < 7 for tx, ty in tag_dots):
            continue
        want, got = BAND_RGB[bands.pop()], s.at(x0 + int(px), y0 + int(py))
        seen.add(want)
        fact(got == want, f"route dot of record {cover} at ({px}, {py}): {got}, expected {want}")
    fact(len(seen) >= 3, f"dots checked in {len(seen)} bands")
    tile_top = next(y for y in range(y0 + h + 1, s.h) if s.at(x0, y) == frame and s.at(x0 + w // 2, y) == frame)
    for key in tiles:
        x, y, tw, th = [float(v) for v in re.search(
            r'id="tile_%d_%d" class="\w+" x="([\d.]+)" y="([\d.]+)" width="([\d.]+)" height="([\d.]+)"' % key,
            html).groups()]
        got = s.at(x0 + int(x + tw / 2), tile_top + int(y + th / 2))
        want = (229, 57, 53) if not tiles[key][5] else (67, 160, 71)
        fact(got == want and (key in hole_tiles) <= (want == (229, 57, 53)),
             f"tile {key} {'in the hole ' if key in hole_tiles else ''}drawn {got}, expected {want}")
    subprocess.run([*chromium, "--no-pdf-header-footer",
                    f"--print-to-pdf={pdf}", "file://" + report], capture_output=True)
    info = subprocess.run(["pdfinfo", pdf], capture_output=True, text=True).stdout
    text = " ".join(subprocess.run(["pdftotext", "-layout", pdf, "-"], capture_output=True, text=True).stdout.split())
    statement = re.search(r"Area reliability [^<]*", html)[0]
    values = sorted(veldor_dat.value(r.ch[0]) for r in fixed)
    mean = 10 * math.log10(sum(10 ** (v / 10) for v in values) / len(values))
    row = "Samples %d %.1f %.1f %.1f %.1f" % (len(values), values[0], quantile(values, 0.5), mean, values[-1])
    fact("(A4)" in info and statement in text and row in text,
         "PDF: %s A4 pages with '%s' and '%s'" % (re.search(r"Pages: *(\d+)", info)[1], statement, row))


def coverage(tmp):
    hole, filled, sparse = (os.path.join(tmp, n + ".DAT") for n in ("hole", "filled", "sparse"))
    for path, with_hole, sparse_north in ((hole, True, False), (filled, False, False), (sparse, False, True)):
        make(path, with_hole, sparse_north)
    hole_tiles = {(x, y) for x in range(HOLE[0][0], HOLE[1][0] + 1) for y in range(HOLE[0][1], HOLE[1][1] + 1)}
    tiles, _, _ = compare_numbers("hole", hole)
    fact({k for k, t in tiles.items() if not t[5]} >= hole_tiles, "the hole's tiles fail")
    _, under, rows = compare_numbers("sparse, linear, p10", sparse, linear=True)
    got = sum(int(t["undersampled"]) for t in rows.values())
    fact(under > 20 and got == under, f"sparse: {got} under-sampled windows, expected {under}")
    _, _, rows = compare_numbers("filled against hole", filled, hole)
    better = {k for k, t in rows.items() if t["change"] == "better"}
    fact(better == hole_tiles and all(t["change"] in ("better", "within") for t in rows.values()),
         f"better tiles {sorted(better)}, expected the hole's {sorted(hole_tiles)}, the others within")

    for fmt, ext in (("tiles-geojson", "geojson"), ("tiles-kml", "kml"), ("tiles-csv", "csv")):
        out = os.path.join(tmp, "gis." + ext)
        run(hole, "--format", fmt, "-o", out, *ARGS)
        text = subprocess.run(["ogrinfo", "-ro", "-al", out], capture_output=True, text=True).stdout
        count = sum(int(n) for n in re.findall(r"Feature Count: (\d+)", text))
        rings = [[tuple(map(float, p.split()[:2])) for p in ring.split(",")]
                 for ring in re.findall(r"^  POLYGON \(\(([^)]*)\)\)", text, re.M)]
        to_m = lambda a, b: ((b[0] - a[0]) * 3.6e6 / MAS_PER_M * math.cos(math.radians(LAT0 / 3.6e6)),
                             (b[1] - a[1]) * 3.6e6 / MAS_PER_M)
        square = all(len(r) == 5 and r[0] == r[4] and all(
            abs(abs(complex(*to_m(r[k], r[k + 1]))) - 100) < 0.5 for k in range(4)) for r in rings)
        fact(count == len(tiles) == len(rings) and square, f"{fmt}: {count} features, {len(rings)} closed squares of 100 m")

    for args, said in (([hole, "--format", "report", "--threshold", "strong"], "bad value 'strong' for --threshold"),
                       ([hole, "--format", "tiles-csv", "--threshold", "50", "--tile", "0.5"], "from 1 m to 100 km"),
                       ([hole, "--format", "report", "--threshold", "50", "--tile", "200000"], "from 1 m to 100 km"),
                       ([os.path.join(DATAFILES, "v1_4_empty.dat"),
                         "--format", "report", "--threshold", "50", "-o", os.path.join(tmp, "none.html")],
                        "has a GPS fix")):
        r = run(*args)
        fact(r.returncode == 2 and said in r.stderr and not any(n.endswith((".html", ".part")) for n in os.listdir(tmp)),
             f"{' '.join(args[1:])}: exit {r.returncode}, {r.stderr.splitlines()[0] if r.stderr else ''!r}")

    report = os.path.join(tmp, "hole.html")
    r = run(hole, "--format", "report", "-o", report, *ARGS)
    fact(r.returncode == 0 and "<script" not in open(report).read() and "http" not in open(report).read()
         .replace("http://www.w3.org/2000/svg", ""), "report: written, no script, nothing loaded from outside")
    browser(report, os.path.join(tmp, "hole.png"), os.path.join(tmp, "hole.pdf"), tiles, hole_tiles)


with tempfile.TemporaryDirectory() as tmp:
    {"formats": formats, "coverage": coverage}[sys.argv[2]](tmp)
print("all checks passed")
