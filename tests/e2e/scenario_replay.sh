#!/usr/bin/env bash
# A saved survey of 100 records replayed by the simulator at speed 10, recorded at one record a
# second and saved: every stored record carries the position of a source record and its readings
# (or those of the record before, when a tick fell between a sample's RP and RA), in order.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

SOURCE="$ART/source.DAT"
SAVED="$ART/replayed.DAT"
RECORDS=100
$VIEWS make "$SOURCE" "$RECORDS"

e2e_setting General "Record Interval Seconds" 1
e2e_start_linked --replay "$SOURCE" --speed 10
e2e_record F1
from=$(e2e_samples_sent)
[ "$from" -lt 50 ] || e2e_fail "the replay was at sample $from already when recording started"
e2e_until 40 '[ "$(e2e_samples_sent)" -ge "$RECORDS" ]' || e2e_fail "the replay stopped at sample $(e2e_samples_sent)"
e2e_record F2
e2e_wait_samples 1 3 && e2e_fail "the simulator sent more than the $RECORDS records of the survey"
e2e_pass "the survey replayed from sample $from to its end while recording"

e2e_save_as "$SAVED"
cat >"$ART/replay_check.py" <<'PY'
import sys
from views_survey import fact, read_records
source, saved = read_records(sys.argv[1]), read_records(sys.argv[2])
at = {(lat, lon): i for i, (_f, _c, lat, lon) in enumerate(source)}
seen = [0]
for n, (_f, ch, lat, lon) in enumerate(saved, 1):
    i = at.get((lat, lon), -1)
    fact(i >= seen[-1] and ch in (source[i][1], source[i - 1][1] if i else None),
         f"record {n}: position {lat} {lon} = source record {i}, readings {ch}")
    seen.append(i)
fact(len(set(seen[1:])) >= int(sys.argv[3]), f"{len(saved)} records stored, {len(set(seen[1:]))} source records in order")
PY
e2e_check check.txt "$ART/replay_check.py" "$SOURCE" "$SAVED" $(((RECORDS - from) / 5 - 5))
tail -1 "$ART/check.txt"
e2e_pass "every stored record carries a position and readings of the source survey, in order"
e2e_quit
