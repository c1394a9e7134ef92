#!/usr/bin/env python3
"""veldor-export read back by GDAL and xmllint against the survey parsed with struct; the damaged
data files refused (message, status 2, no output); usage for a wrong option. Args: EXE DATAFILES"""
import os, re, subprocess, sys, tempfile, time

TESTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "..", "tests")
sys.path[:0] = [TESTS, os.path.join(TESTS, "e2e")]
import veldor_dat  # noqa: E402  (the survey, and the bands of the default curve)
from views_survey import fact  # noqa: E402

EXE, DATAFILES = sys.argv[1], sys.argv[2]
BANDS = ["High: above 80", "Mid: above 60", "Low: above 40", "None: 40 or below"]
CSV = ["-oo", "X_POSSIBLE_NAMES=longitude", "-oo", "Y_POSSIBLE_NAMES=latitude"]


def run(*args): return subprocess.run([EXE, *args], capture_output=True, text=True)


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


with tempfile.TemporaryDirectory() as tmp:
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
print("all checks passed")
