#!/usr/bin/env python3
"""Checks a data file written by veldor.exe against what the controller
simulator sent (its log and its record file).

  check_dat.py DAT --log SIM_LOG --sent SENT_FILE [options]
  check_dat.py --gauge DAT     prints the store gauge of its record count

The file must be a sound v1.4 data file: magic, header, records, no tags,
trailer, and a length that fits. Every record must carry a position and a
set of readings that the simulator sent, positions and readings each in the
order sent; the readings of a record belong to the sample of its position,
or to a later one when the positions between were spoiled, or to the one
before (a record taken between the two frames of a sample). Every
sample that came through unspoiled while recording (--span; else between
the first and the last one recorded) must be in the file, which holds when
the simulator's period is longer than the record interval. Flags must say what the link said: a fix
(the simulator reports 48), live data unless the controller had been silent
for ten seconds, the accessory channel where one was reported. Times must
lie within the run and never go back.

Prints a summary; exits 1 with the reasons when a check fails.
"""
import argparse
import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
from veldor_dat import FLAG_GPS_DIFF, FLAG_GPS_FIX, FLAG_HAS_CHANNEL, FLAG_LIVE, gauge, read  # noqa: E402

SPOILING = {"bad-check", "garbage"}


def read_samples(log_path, sent_path):
    """The samples in the order sent, from the simulator's log: position and
    readings, and whether each of the two frames reached the program
    unspoiled at least once (first sent or repeated for an "NA")."""
    samples = []
    sent_frames = []  # [sample index, "rp" or "ra", unspoiled] per transmission
    silence = []  # index of the last sample before each silence
    for line in open(log_path, encoding="latin-1"):
        parts = line.split()
        if len(parts) < 3:
            continue
        what, body = parts[1], parts[2:]
        if what == "TX" and body[0] == "RP":
            samples.append(dict(lat=int(body[1]), lon=int(body[2]), ch=None, acc=None))
            sent_frames.append([len(samples) - 1, "rp", True])
        elif what == "TX" and body[0] == "RA" and samples and samples[-1]["ch"] is None:
            samples[-1]["ch"] = tuple(int(v) & 0xFF for v in body[1:5])
            samples[-1]["acc"] = int(body[5]) & 0xFF
            sent_frames.append([len(samples) - 1, "ra", True])
        elif what == "TX-REPEAT" and body[0] in ("RP", "RA") and samples:
            sent_frames.append([len(samples) - 1, body[0].lower(), True])
        elif what in ("TX", "TX-REPEAT"):
            sent_frames.append(None)
        elif what == "FAULT":
            if sent_frames and sent_frames[-1] is not None and set(body) & SPOILING:
                sent_frames[-1][2] = False
        elif what == "NOTE" and body[:2] == ["silence", "begins"]:
            silence.append(len(samples) - 1)
    for s in samples:
        s["rp_ok"] = s["ra_ok"] = False
    for frame in sent_frames:
        if frame is not None and frame[2]:
            samples[frame[0]][frame[1] + "_ok"] = True
    samples = [s for s in samples if s["ch"] is not None]
    sent = []
    for line in open(sent_path, encoding="latin-1"):
        v = line.split()
        if len(v) == 7:
            sent.append((int(v[0]), int(v[1]), tuple(int(x) for x in v[2:6]), int(v[6])))
    mine = [(s["lat"], s["lon"], s["ch"], s["acc"]) for s in samples]
    if mine != sent[:len(mine)] or len(sent) - len(mine) > 1:
        raise SystemExit("FAIL: the simulator's log and its record file disagree")
    return samples, silence


def check(args):
    h = read(args.dat)
    records, problems = h.records, list(h.problems)
    samples, silence = read_samples(args.log, args.sent)
    if h.seconds != args.interval:
        problems.append(f"interval seconds {h.seconds}, expected {args.interval}")
    if h.metres != 500 or h.distance != 0 or h.input_channel != 0:
        problems.append(f"header metres {h.metres}, distance mode {h.distance}, input channel {h.input_channel}")
    if h.names != [args.cal_name] * 4:
        problems.append(f"calibration names {h.names}")
    if h.labels != ["Ch 1", "Ch 2", "Ch 3", "Ch 4"]:
        problems.append(f"labels {h.labels}")
    if h.tags:
        problems.append(f"{len(h.tags)} tags")
    if not args.since <= h.start <= args.until:
        problems.append(f"start time {h.start} not within the run {args.since}..{args.until}")
    if len(records) < args.min_records:
        problems.append(f"{len(records)} records, at least {args.min_records} expected")
    if args.shown is not None and gauge(len(records)) != args.shown:
        problems.append(f"{len(records)} records would show \"{gauge(len(records))}\", "
                        f"the program showed \"{args.shown}\"")

    p = q = 0
    positions, readings = [], []
    stale = before_data = 0
    silent_position = None
    if silence:
        delivered = [k for k in range(silence[0] + 1) if samples[k]["rp_ok"]]
        silent_position = delivered[-1] if delivered else None
    for n, r in enumerate(records, 1):
        # Records taken before the first position arrived hold the values
        # of a start with no data: zeros, not live, no channel.
        if not positions and (r.lat, r.lon, r.ch) == (0, 0, (0, 0, 0, 0)):
            if r.flags & (FLAG_LIVE | FLAG_HAS_CHANNEL | FLAG_GPS_DIFF | 0xC3):
                problems.append(f"record {n}: flags 0x{r['flags']:02X} before any data")
            before_data += 1
            continue
        while p < len(samples) and (samples[p]["lat"], samples[p]["lon"]) != (r.lat, r.lon):
            p += 1
        acc = r.acc if r.flags & FLAG_HAS_CHANNEL else 0
        while q < len(samples) and (samples[q]["ch"], samples[q]["acc"]) != (r.ch, acc):
            q += 1
        if p == len(samples):
            problems.append(f"record {n}: position {r['lat']} {r['lon']} was not sent (in this order)")
            break
        if q == len(samples):
            problems.append(f"record {n}: readings {r['ch']} channel {acc} were not sent (in this order)")
            break
        # Position and readings come in separate frames, the position first:
        # readings ahead of the position only past positions that never
        # came through; a position ahead of the readings only with the
        # readings of the last sample still on their way, and those before
        # it lost.
        if q > p and any(samples[k]["rp_ok"] for k in range(p + 1, q + 1)):
            problems.append(f"record {n}: position of sample {p + 1} with the readings of sample {q + 1}")
        if p > q and any(samples[k]["ra_ok"] for k in range(q + 1, p)):
            problems.append(f"record {n}: position of sample {p + 1} with the readings of sample {q + 1}")
        positions.append(p)
        readings.append(q)
        if r.flags & 0xC3:
            problems.append(f"record {n}: flags 0x{r['flags']:02X} have bits no record gets")
        if not r.flags & FLAG_GPS_FIX or r.flags & FLAG_GPS_DIFF:
            problems.append(f"record {n}: flags 0x{r['flags']:02X}, the GPS gave fixes without correction")
        if (r.flags & FLAG_HAS_CHANNEL) != (FLAG_HAS_CHANNEL if samples[q]["acc"] else 0):
            problems.append(f"record {n}: channel flag does not follow the channel sent")
        if not r.flags & FLAG_LIVE:
            stale += 1
            # Not live only in the silence, with the last position that
            # came through before it.
            if silent_position is None or p != silent_position:
                problems.append(f"record {n}: not live, and no silence explains it")
        if not args.since <= r.time <= args.until:
            problems.append(f"record {n}: time {r['time']} not within the run")
        if n > 1 and r.time < records[n - 2].time:
            problems.append(f"record {n}: time goes back")
        if n == 1 and r.time < h.start:
            problems.append("the first record is older than the start of the recording")
    if args.expect_stale and stale == 0:
        problems.append("no record marked not live although the controller was silent")

    # Coverage: within each recording, every sample sent that came through
    # unspoiled is in the file, up to the last one recorded.
    spans = args.span or ([f"{positions[0] + 1}:{positions[-1] + 1}"] if positions else [])
    for span in spans:
        first, last = (int(v) - 1 for v in span.split(":"))
        recorded = [k for k in positions if first - 1 <= k <= last]
        if not recorded:
            problems.append(f"no record of the recording of samples {first + 1}..{last + 1}")
            continue
        for k in range(first, min(last, max(recorded)) + 1):
            s = samples[k]
            if not (s["rp_ok"] and s["ra_ok"]):
                continue
            if k not in positions or k not in readings:
                problems.append(f"sample {k + 1} ({s['lat']} {s['lon']}) came through unspoiled "
                                f"while recording and is not in the file")
    spoiled = sum(1 for s in samples if not (s["rp_ok"] and s["ra_ok"]))
    print(f"{args.dat}: {len(records)} records of samples {positions[0] + 1 if positions else '-'}"
          f"..{positions[-1] + 1 if positions else '-'}; {len(samples)} samples sent, {spoiled} spoiled;"
          f" {stale} records not live, {before_data} before any data")
    if problems:
        for problem in problems:
            print("FAIL:", problem)
        return 1
    return 0


def main():
    if len(sys.argv) == 3 and sys.argv[1] == "--gauge":
        # The store gauge that the file's record count shows.
        print(gauge(len(read(sys.argv[2]).records)))
        return
    parser = argparse.ArgumentParser()
    parser.add_argument("dat")
    parser.add_argument("--log", required=True)
    parser.add_argument("--sent", required=True)
    parser.add_argument("--interval", type=int, required=True)
    parser.add_argument("--since", type=int, required=True, help="seconds since 1970 before the start")
    parser.add_argument("--until", type=int, required=True, help="seconds since 1970 after the save")
    parser.add_argument("--cal-name", default="Default.cal")
    parser.add_argument("--min-records", type=int, default=1)
    parser.add_argument("--shown", help="the store gauge the program showed, e.g. \"0.05 %%\"")
    parser.add_argument("--expect-stale", action="store_true")
    parser.add_argument("--span", action="append",
                        help="FIRST:LAST, numbers of the samples sent while recording (from 1)")
    sys.exit(check(parser.parse_args()))


if __name__ == "__main__":
    main()
