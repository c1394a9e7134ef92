#!/usr/bin/env python3
"""Writes the calibration files that the unit tests read beside this script,
laid out with struct (not with the program's writer): the magic and its NUL,
N, then N points of power, 3 bytes of no meaning and value.
"""
import os
import struct

HERE = os.path.dirname(os.path.abspath(__file__))
MAGIC = b"[VELDOR - cal file v1.0]\x00"


def point(power, value, spare=b"\x00\x00\x00"):
    return struct.pack("<B3sf", power, spare, value)


def cal_file(points, count=None):
    return MAGIC + struct.pack("<i", len(points) if count is None else count) + b"".join(points)


FILES = {
    # Spare bytes that are not zero: the test reads them back and writes them out again unchanged.
    "good.cal": cal_file([point(10, 5.0, b"\x11\x22\x33"), point(20, 15.0), point(200, -2.5, b"\xAA\xBB\xCC")]),
    "default_curve.cal": cal_file([point(0, 0.0), point(255, 100.0)]),
    # N of 0, as "New" in the editor writes it: 29 bytes.
    "zero_points.cal": cal_file([]),
    # Claims 4 points and holds 2 whole ones and half of a third.
    "truncated.cal": cal_file([point(1, 1.0), point(2, 2.0)], count=4) + point(3, 3.0)[:5],
    "truncated_no_count.cal": MAGIC,
    "truncated_magic.cal": MAGIC[:10],
    # A data file's header offered as a .CAL, and one letter off.
    "wrong_magic_datafile.cal": b"[VELDOR - data file v1.4]\x00" + struct.pack("<i", 1) + point(1, 1.0),
    "wrong_magic.cal": b"[VELDOR - cal file v1.1]\x00" + struct.pack("<i", 1) + point(1, 1.0),
    # 300 points, powers 0..255 then 0..43: a reader stops storing at 256.
    "too_many_points.cal": cal_file([point(i % 256, float(i)) for i in range(300)]),
    # A negative N reads like 0.
    "negative_count.cal": cal_file([point(5, 5.0)], count=-3),
}
for name, data in FILES.items():
    with open(os.path.join(HERE, name), "wb") as f:
        f.write(data)
