#!/usr/bin/env bash
# A saved survey driven again through the program: the simulator replays a
# 100-record survey (2 s apart) at speed 10 from the program's "OP 1" on;
# F1 records at "Record Interval Seconds" 1 until the last record is sent,
# F2, File > Save As. Every stored record carries the position of a record of
# the source and its readings (or those of the record before, when a tick
# fell between the RP and the RA of one sample), in the source's order.
set -euo pipefail
E2E_SCENARIO=replay
# shellcheck source=lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

SOURCE="$ART/source.DAT"
SAVED="$ART/replayed.DAT"
RECORDS=100
python3 "$E2E_ROOT_DIR/tests/e2e/views_survey.py" make "$SOURCE" "$RECORDS"

e2e_fresh_settings
e2e_setting General "Record Interval Seconds" 1
e2e_start_sim --replay "$SOURCE" --speed 10
e2e_start_program
e2e_wait_log "RX OP 1" 30 || e2e_fail "no OP 1 from the program"
e2e_close_signon
e2e_focus
e2e_key F1
e2e_expect "F1 did not start recording" -t 10 pane1=Recording
from=$(e2e_samples_sent)
[ "$from" -lt 50 ] || e2e_fail "the replay was at sample $from already when recording started"
e2e_wait_samples $((RECORDS - from)) 40 || e2e_fail "the replay stopped at sample $(e2e_samples_sent)"
e2e_key F2
e2e_expect "F2 did not stop recording" -t 10 pane1=Idle
e2e_wait_samples 1 3 && e2e_fail "the simulator sent more than the $RECORDS records of the survey"
e2e_pass "the survey replayed from sample $from to its end while recording"

e2e_save_as "$SAVED"
python3 - "$E2E_ROOT_DIR/tests/e2e" "$SOURCE" "$SAVED" $(((RECORDS - from) / 5 - 5)) >"$ART/check.txt" <<'PY' || { cat "$ART/check.txt"; e2e_fail "the saved survey is not the replayed one"; }
import sys
sys.path.insert(0, sys.argv[1])
from views_survey import read_records
source, saved = read_records(sys.argv[2]), read_records(sys.argv[3])
at = {(lat, lon): i for i, (_f, _c, lat, lon) in enumerate(source)}
seen, bad = [], 0
for n, (_f, ch, lat, lon) in enumerate(saved, 1):
    i = at.get((lat, lon))
    if i is None or ch not in (source[i][1], source[i - 1][1] if i else None) or (seen and i < seen[-1]):
        print(f"record {n}: position {lat} {lon} = source record {i}, readings {ch}")
        bad = 1
    seen.append(i if i is not None else -1)
print(f"{len(saved)} records stored, {len(set(seen))} source records from {seen[0] + 1} to {seen[-1] + 1} in order")
sys.exit(bad or len(set(seen)) < int(sys.argv[4]))
PY
cat "$ART/check.txt"
e2e_pass "every stored record carries a position and readings of the source survey, in order"
e2e_quit
