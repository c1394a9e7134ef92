#!/usr/bin/env python3
"""Checks a data file written by veldor.exe against what the controller
simulator sent (its log and its record file); exits 1 with the reasons when a check fails.

  check_dat.py DAT --log SIM_LOG --sent SENT_FILE --interval S --since T0 --until T1 --span FIRST:LAST...
  check_dat.py --gauge DAT     prints the store gauge of its record count

The file must be a sound v1.4 file of no tags. Every record holds a position and readings that the
simulator sent, each in the order sent: the readings of the sample of its position, of a later one
when the positions between were spoiled, or of the one before (a record taken between the two
frames of a sample). Every sample that came through unspoiled while recording (a --span: the
samples sent meanwhile) is in the file. Flags say what the link said: a fix without correction,
live data but in a silence of the controller, the accessory channel where one was reported. Times
lie within the run (since and until: seconds from 1970) and never go back.
"""
import argparse
import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
from veldor_dat import FLAG_GPS_DIFF, FLAG_GPS_FIX, FLAG_HAS_CHANNEL, FLAG_LIVE, gauge, read  # noqa: E402

SPOILING = {"bad-check", "garbage"}
NO_RECORD_BITS = 0xC3


def read_samples(log_path, sent_path):
    """The samples in the order sent, from the simulator's log: position and
    readings, and whether each of the two frames reached the program
    unspoiled at least once (first sent or repeated for an "NA"); and the
    last sample before each silence."""
    samples, silence = [], []
    last_frame = None  # (sample, "rp_ok" or "ra_ok", what it was before) of the last frame sent
    for line in open(log_path, encoding="latin-1"):
        parts = line.split()
        if len(parts) < 3:
            continue
        what, body = parts[1], parts[2:]
        if what == "FAULT" and last_frame is not None and set(body) & SPOILING:
            sample, key, before = last_frame
            sample[key] = before
        if what == "NOTE" and body[:2] == ["silence", "begins"]:
            silence.append(len(samples) - 1)
        if what not in ("TX", "TX-REPEAT"):
            continue
        frame = body[0].lower() if body[0] in ("RP", "RA") else None
        if what == "TX" and frame == "rp":
            samples.append(dict(lat=int(body[1]), lon=int(body[2]), ch=None, acc=None, rp_ok=False, ra_ok=False))
        elif what == "TX" and frame == "ra" and samples and samples[-1]["ch"] is None:
            samples[-1].update(ch=tuple(int(v) & 0xFF for v in body[1:5]), acc=int(body[5]) & 0xFF)
        elif what == "TX" or not samples:
            frame = None
        last_frame = frame and (samples[-1], frame + "_ok", samples[-1][frame + "_ok"])
        if frame:
            samples[-1][frame + "_ok"] = True
    samples = [s for s in samples if s["ch"] is not None]
    sent = [(int(v[0]), int(v[1]), tuple(map(int, v[2:6])), int(v[6]))
            for v in map(str.split, open(sent_path, encoding="latin-1")) if len(v) == 7]
    mine = [(s["lat"], s["lon"], s["ch"], s["acc"]) for s in samples]
    # Either may be a sample ahead: the log names a frame as it starts out, the record file once it is out.
    n = min(len(mine), len(sent))
    if mine[:n] != sent[:n] or abs(len(sent) - len(mine)) > 1:
        raise SystemExit("FAIL: the simulator's log and its record file disagree")
    return samples, silence


def check(args):
    h = read(args.dat)
    records, problems = h.records, list(h.problems)
    samples, silence = read_samples(args.log, args.sent)
    header = (h.seconds, h.metres, h.distance, h.input_channel, h.names, h.labels, len(h.tags))
    want = (args.interval, 500, 0, 0, ["Default.cal"] * 4, ["Ch 1", "Ch 2", "Ch 3", "Ch 4"], 0)
    if header != want:
        problems.append(f"interval, metres, distance mode, input channel, calibrations, labels, tags: "
                        f"{header}, expected {want}")
    if not args.since <= h.start <= args.until:
        problems.append(f"start time {h.start} not within the run {args.since}..{args.until}")
    if len(records) < args.min_records:
        problems.append(f"{len(records)} records, at least {args.min_records} expected")

    p = q = stale = before_data = 0
    positions, readings = [], []
    delivered = [k for k in range(silence[0] + 1) if samples[k]["rp_ok"]] if silence else []
    silent_position = delivered[-1] if delivered else None
    for n, r in enumerate(records, 1):
        # Records taken before the first position arrived hold the values
        # of a start with no data: zeros, not live, no channel.
        if not positions and (r.lat, r.lon, r.ch) == (0, 0, (0, 0, 0, 0)):
            if r.flags & (FLAG_LIVE | FLAG_HAS_CHANNEL | FLAG_GPS_DIFF | NO_RECORD_BITS):
                problems.append(f"record {n}: flags 0x{r.flags:02X} before any data")
            before_data += 1
            continue
        while p < len(samples) and (samples[p]["lat"], samples[p]["lon"]) != (r.lat, r.lon):
            p += 1
        acc = r.acc if r.flags & FLAG_HAS_CHANNEL else 0
        while q < len(samples) and (samples[q]["ch"], samples[q]["acc"]) != (r.ch, acc):
            q += 1
        if p == len(samples) or q == len(samples):
            problems.append(f"record {n}: position {r.lat} {r.lon} or readings {r.ch} channel {acc} "
                            f"were not sent (in this order)")
            break
        # Readings ahead of the position only past positions that never came
        # through; a position ahead only while its readings are on their way.
        if (q > p and any(samples[k]["rp_ok"] for k in range(p + 1, q + 1))
                or p > q and any(samples[k]["ra_ok"] for k in range(q + 1, p))):
            problems.append(f"record {n}: position of sample {p + 1} with the readings of sample {q + 1}")
        positions.append(p)
        readings.append(q)
        if r.flags & NO_RECORD_BITS or (r.flags & (FLAG_GPS_FIX | FLAG_GPS_DIFF)) != FLAG_GPS_FIX:
            problems.append(f"record {n}: flags 0x{r.flags:02X}, the GPS gave fixes without correction "
                            f"and 0x{NO_RECORD_BITS:02X} no record gets")
        if bool(r.flags & FLAG_HAS_CHANNEL) != bool(samples[q]["acc"]):
            problems.append(f"record {n}: channel flag does not follow the channel sent")
        if not r.flags & FLAG_LIVE:
            stale += 1
            if silent_position is None or p != silent_position:
                problems.append(f"record {n}: not live, and no silence explains it")
        previous = records[n - 2].time if n > 1 else h.start
        if not args.since <= r.time <= args.until or r.time < previous:
            problems.append(f"record {n}: time {r.time} not within the run, or before the one before")
    if args.expect_stale and stale == 0:
        problems.append("no record marked not live although the controller was silent")

    for span in args.span:
        first, last = (int(v) - 1 for v in span.split(":"))
        recorded = [k for k in positions if first - 1 <= k <= last]
        if not recorded:
            problems.append(f"no record of the recording of samples {first + 1}..{last + 1}")
            continue
        for k in range(first, min(last, max(recorded)) + 1):
            s = samples[k]
            if s["rp_ok"] and s["ra_ok"] and (k not in positions or k not in readings):
                problems.append(f"sample {k + 1} ({s['lat']} {s['lon']}) came through unspoiled "
                                f"while recording and is not in the file")
    spoiled = sum(1 for s in samples if not (s["rp_ok"] and s["ra_ok"]))
    print(f"{args.dat}: {len(records)} records of samples {positions[0] + 1 if positions else '-'}"
          f"..{positions[-1] + 1 if positions else '-'}; {len(samples)} samples sent, {spoiled} spoiled;"
          f" {stale} records not live, {before_data} before any data")
    for problem in problems:
        print("FAIL:", problem)
    return 1 if problems else 0


def main():
    if sys.argv[1] == "--gauge":
        return print(gauge(len(read(sys.argv[2]).records)))
    parser = argparse.ArgumentParser()
    parser.add_argument("dat")
    for name, kind in (("--log", str), ("--sent", str), ("--interval", int), ("--since", int), ("--until", int)):
        parser.add_argument(name, type=kind, required=True)
    parser.add_argument("--min-records", type=int, default=1)
    parser.add_argument("--expect-stale", action="store_true")
    parser.add_argument("--span", action="append", required=True)
    sys.exit(check(parser.parse_args()))


if __name__ == "__main__":
    main()
