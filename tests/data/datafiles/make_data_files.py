#!/usr/bin/env python3
"""Writes the data files that the unit tests read, one of each version and the
damaged ones, each named for what it holds, field by field without the
program's own writer, beside this script. tests/unit/data_file_test.cpp
expects their contents: change both together.
"""
import functools
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", ".."))
from veldor_dat import TRAILER, magic, records, tags, header as dat_header  # noqa: E402

NAMES = [b"C:\\Survey\\Cal\\Mast.cal", b"", b"C:\\Survey\\Cal\\Dipole 3.cal", b"Ch4.cal"]
LABELS = [b"North mast", b"Ch 2", b"Repeater", b"Spare 4"]

# flags, accessoryChannel, ch[4], latitude, longitude, time
RECORDS = [
    (0x14, 0, (10, 20, 30, 40), 185400000, -3600000, 1600000000),
    (0x3C, 7, (255, 0, 128, 1), -324000000, 648000000, 1600000005),
    (0x81, 99, (1, 2, 3, 4), -1, 2147483647, 4294967295),
    (0x00, 0, (200, 201, 202, 203), 324000000, -648000000, 0),
]
TAGS = [(0, b"Start of run"), (3, b"x" * 50), (-1, b"points at no record")]
header = functools.partial(dat_header, names=NAMES, labels=LABELS)

# One sound file of each version.
v11 = header(1, 1100000000, seconds=7, input_channel=2) + records(1, RECORDS)
v14 = (header(4, 1400000000, seconds=3, meters=20, distance=1, input_channel=0)
       + records(4, RECORDS) + tags(TAGS) + TRAILER)
FILES = {
    "v1_0.dat": header(0, 1000000000) + records(0, RECORDS[:3]),
    "v1_1.dat": v11 + b"bytes behind the last record",
    "v1_2.dat": (header(2, 1200000000, seconds=10, meters=250, distance=1, input_channel=3)
                 + records(2, RECORDS[:3]) + tags(TAGS[:2]) + TRAILER),
    # Old buffer contents behind every NUL and bytes behind the trailer, which a reader ignores.
    "v1_3.dat": (header(3, 1300000000, seconds=2, meters=1000, distance=0, input_channel=1, junk=b"JUNK")
                 + records(3, RECORDS) + tags(TAGS, junk=b"#") + TRAILER + b"anything after"),
    "v1_4.dat": v14,
    "v1_4_empty.dat": (header(4, 0, seconds=5, meters=500, names=[b""] * 4,
                              labels=[b"Ch 1", b"Ch 2", b"Ch 3", b"Ch 4"])
                       + records(4, []) + tags([]) + TRAILER),
    # Damaged files, each named for its fault.
    "wrong_magic.dat": magic(5) + v14[26:],
    "magic_without_nul.dat": v14[:25] + b"X" + v14[26:],
    "shorter_than_magic.dat": v14[:20],
    "truncated_v1_4.dat": v14[: 1213 + 18 * 2 + 7],
    "truncated_v1_4_trailer.dat": v14[:-1],
    "truncated_v1_1.dat": v11[: 1080 + 14 * 2 + 9],
    "negative_record_count.dat": (header(3, 1300000000, input_channel=1) + records(3, [], count=-5)
                                  + tags(TAGS[:1]) + TRAILER),
    "tag_count_1001.dat": (header(3, 1300000000) + records(3, RECORDS[:1])
                           + tags([(0, b"tag %d" % i) for i in range(1001)]) + TRAILER),
    # Only the low 16 bits of the tag count are taken: 0x00010002 is 2.
    "tag_count_high_bits.dat": (header(3, 1300000000) + records(3, RECORDS[:1])
                                + tags(TAGS[:2], count_field=0x00010002) + TRAILER),
    "name_without_nul.dat": (header(4, 1400000000, names=[NAMES[0], b"A" * 260] + NAMES[2:])
                             + records(4, RECORDS) + tags(TAGS) + TRAILER),
    "label_without_nul.dat": (header(4, 1400000000, labels=LABELS[:2] + [b"L" * 32, LABELS[3]])
                              + records(4, RECORDS) + tags(TAGS) + TRAILER),
    "tag_text_without_nul.dat": header(4, 1400000000) + records(4, RECORDS) + tags([(1, b"T" * 51)]) + TRAILER,
}
for name, data in FILES.items():
    with open(os.path.join(HERE, name), "wb") as f:
        f.write(data)
