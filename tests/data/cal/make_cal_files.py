#!/usr/bin/env python3
"""Writes the calibration test files of tests/data/cal from first principles.

The bytes are laid out here with the struct module straight from the format of a
calibration file (little-endian, no gaps), independently of the program's writer:

    offset 0   25 bytes  magic "[VELDOR - cal file v1.0]" and its NUL
    offset 25   4 bytes  N, signed 32-bit
    offset 29  8N bytes  points: power (uint8), 3 bytes of no meaning,
                         value (IEEE float32)

Run it from anywhere; it rewrites the files next to itself. The outputs are
checked in, and the unit tests read them.
"""
import os
import struct

HERE = os.path.dirname(os.path.abspath(__file__))
MAGIC = b"[VELDOR - cal file v1.0]\x00"
assert len(MAGIC) == 25


def point(power, value, spare=b"\x00\x00\x00"):
    assert len(spare) == 3
    return struct.pack("<B3sf", power, spare, value)


def cal_file(points, count=None):
    if count is None:
        count = len(points)
    return MAGIC + struct.pack("<i", count) + b"".join(points)


def write(name, data):
    with open(os.path.join(HERE, name), "wb") as f:
        f.write(data)


def main():
    # A sound file of three points whose spare bytes are not zero: the test
    # reads them back and writes them out again unchanged.
    write("good.cal", cal_file([
        point(10, 5.0, b"\x11\x22\x33"),
        point(20, 15.0, b"\x00\x00\x00"),
        point(200, -2.5, b"\xAA\xBB\xCC"),
    ]))
    # The default curve of start-up: (0, 0.0) and (255, 100.0).
    write("default_curve.cal", cal_file([point(0, 0.0), point(255, 100.0)]))
    # N of 0, as "New" in the editor writes it: 29 bytes.
    write("zero_points.cal", cal_file([]))
    # Claims 4 points and holds 2 whole ones and half of a third.
    write("truncated.cal",
          cal_file([point(1, 1.0), point(2, 2.0)], count=4) + point(3, 3.0)[:5])
    # Ends directly after the magic: no N at all.
    write("truncated_no_count.cal", MAGIC)
    # Too short to hold the magic.
    write("truncated_magic.cal", MAGIC[:10])
    # Wrong magic: a data file's header offered as a .CAL, and one letter off.
    write("wrong_magic_datafile.cal",
          b"[VELDOR - data file v1.4]\x00" + struct.pack("<i", 1) + point(1, 1.0))
    write("wrong_magic.cal",
          b"[VELDOR - cal file v1.1]\x00" + struct.pack("<i", 1) + point(1, 1.0))
    # Claims and holds 300 points, powers 0..255 then 0..43: a reader must
    # stop storing at 256.
    write("too_many_points.cal",
          cal_file([point(i % 256, float(i)) for i in range(300)]))
    # A negative N reads like 0.
    write("negative_count.cal", cal_file([point(5, 5.0)], count=-3))


if __name__ == "__main__":
    main()
