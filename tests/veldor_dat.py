"""The .DAT survey file in the tests, the one reader of it: written field by
field with struct (not with the program's writer), read back, and what the
program must make of it: readings on the default curve, their colour bands,
position and reading texts, the store gauge; and the test survey of the views.
"""
import struct
from collections import namedtuple

Record = namedtuple("Record", "flags acc ch lat lon time")
Survey = namedtuple("Survey", "start seconds metres distance input_channel names labels records tags problems")
RECORD = struct.Struct("<BB4BiiI")
TAG = struct.Struct("<i51s")
FLAG_GPS_FIX, FLAG_HAS_CHANNEL, FLAG_LIVE, FLAG_GPS_DIFF = 0x04, 0x08, 0x10, 0x20
TRAILER = b"[End]\0"
STORE_RECORDS = 16000


def f32(x):
    return struct.unpack("<f", struct.pack("<f", x))[0]


def magic(version):
    return ("[VELDOR - data file v1.%d]" % version).encode() + b"\0"


def text(value, size, junk=b""):
    """A NUL-terminated text in a field of size bytes, padded with junk (the
    writer's old buffer contents) or zeros; a value of size bytes unterminated."""
    return value if len(value) == size else value + b"\0" + ((junk or b"\0") * size)[:size - len(value) - 1]


def header(version, start, seconds=5, meters=500, distance=0, input_channel=0, names=None, labels=None, junk=b""):
    out = magic(version) + struct.pack("<I", start)
    if version == 1:
        out += struct.pack("<iH", seconds, input_channel)
    elif version >= 2:
        out += struct.pack("<iiBH", seconds, meters, distance, input_channel)
    out += b"".join(text(name, 260, junk) for name in names or [b""] * 4)
    if version == 4:
        out += b"".join(text(label, 32, junk) for label in labels or [b"Ch %d" % (c + 1) for c in range(4)])
    return out


def records(version, rows, count=None):
    """rows: (flags, accessory channel, ch[4], latitude, longitude, time)."""
    out = struct.pack("<i", len(rows) if count is None else count)
    for flags, channel, ch, lat, lon, t in rows:
        out += struct.pack("<BB4Bii", flags, channel, *ch, lat, lon)
        if version >= 3:
            out += struct.pack("<I", t)
    return out


def tags(rows, count_field=None, junk=b""):
    out = struct.pack("<I", len(rows) if count_field is None else count_field)
    return out + b"".join(struct.pack("<i", index) + text(value, 51, junk) for index, value in rows)


def read(path):
    """The survey of a v1.4 file; problems lists a wrong trailer or length."""
    data = open(path, "rb").read()
    if data[:26] != magic(4):
        raise SystemExit(f"FAIL: {path}: magic is {data[:26]!r}")
    field = lambda at, size: data[at:at + size].split(b"\0", 1)[0].decode("latin-1")
    start, seconds, metres, distance, input_channel = struct.unpack_from("<IiiBH", data, 26)
    count = struct.unpack_from("<i", data, 1209)[0]
    at = 1213 + RECORD.size * max(count, 0)
    rows = [Record(r[0], r[1], r[2:6], *r[6:]) for r in RECORD.iter_unpack(data[1213:at])]
    end = at + 4 + TAG.size * max(struct.unpack_from("<i", data, at)[0], 0)
    marks = [(index, label.split(b"\0")[0].decode("latin-1")) for index, label in TAG.iter_unpack(data[at + 4:end])]
    problems = []
    if data[end:end + 6] != TRAILER:
        problems.append(f"trailer is {data[end:end + 6]!r}")
    if len(data) != end + 6:
        problems.append(f"length {len(data)}, a sound file of {count} records and {len(marks)} tags has {end + 6}")
    return Survey(start, seconds, metres, distance, input_channel, [field(41 + 260 * i, 260) for i in range(4)],
                  [field(1081 + 32 * i, 32) for i in range(4)], rows, marks, problems)


def value(raw, top=100.0):
    """A reading on the default curve (0, 0.0) to (255, top), one rounding a step."""
    return top if raw == 255 else f32(f32(f32(float(raw)) / 255.0) * top)


def band(raw):
    """The colour band of a reading: 0 High, 1 Mid, 2 Low, 3 None."""
    v = value(raw)
    return 0 if v > 80 else 1 if v > 60 else 2 if v > 40 else 3


def reading(raw, decimals):
    """A reading as the listings write it (decimals -1: the raw number)."""
    if decimals == -1:
        return "%d" % raw
    v = value(raw)
    return {0: "%d" % int(v), 1: "%.1f" % v, 3: "%.3f" % v}[decimals]


def position(v, axis, latlong=1, sign=1):
    """A position in ms of arc as text: latlong 1 degrees, 3 degrees minutes
    seconds; sign 2 "+"/"-" before it, else the N/S or E/W letter after it."""
    m, out = abs(v), ("-" if v < 0 else "+") if sign == 2 else ""
    if latlong == 3:
        deg, rem = divmod(m, 3600000)
        out += "%d %d %.3f" % (deg, rem // 60000, f32(rem % 60000 / 1000.0))
    else:
        out += "%.7f" % f32(f32(float(m)) / 3600000.0)
    if sign != 2:
        out += (" S" if v < 0 else " N") if axis == "lat" else (" W" if v < 0 else " E")
    return out


def gauge(count):
    """The store gauge of the status bar for a record count."""
    return "0 %" if count <= 0 else "%.2f %%" % f32(f32(f32(count) / float(STORE_RECORDS)) * 100.0)


BASE_LAT, BASE_LON, STEP = 185400000, -3600000, 2000
BAND_RAW = [230, 180, 128, 60]            # High, Mid, Low, None on the default curve
GPS_FLAGS = [0x10, 0x14, 0x34, 0x04]      # no fix, fix, fix + differential, fix not live
TAGGED = [0, 5, 47, 150, 299]


def survey(count=300):
    """count records on a lawn-mower grid of 20 columns, 2 seconds of arc
    apart, with channel 1 in all four colour bands (a band per five columns)
    and every GPS state."""
    rows = []
    for i in range(count):
        row, col = divmod(i, 20)
        col = 19 - col if row % 2 else col
        ch = (BAND_RAW[col // 5] + row % 3, BAND_RAW[row % 4], BAND_RAW[(row + col) % 4], 100 + i % 50)
        flags = GPS_FLAGS[i % 4] | (0x08 if i % 10 == 0 else 0)
        rows.append(Record(flags, i % 7 if flags & 0x08 else 0, ch, BASE_LAT + row * STEP,
                           BASE_LON + col * STEP, 1700000000 + 2 * i))
    return rows


def write(path, rows, marks, labels, seconds=2):
    """A v1.4 file of rows and tags (index, text) started at 1700000000, every channel on Default.cal."""
    with open(path, "wb") as f:
        f.write(header(4, 1700000000, seconds=seconds, names=[b"Default.cal"] * 4, labels=labels)
                + records(4, rows) + tags(marks) + TRAILER)


def make(path, count=300):
    """The test survey as a v1.4 file, with tags on the records of TAGGED."""
    marks = [(i, b"Tag at record %d" % (i + 1)) for i in TAGGED]
    write(path, survey(count), marks, [b"North", b"East", b"South", b"West"])
