#!/usr/bin/env bash
# Records the sample survey that the package and the setup carry,
# docs/package/Sample.DAT. The file is kept in the repository; run this only
# to make it again on purpose (the build never does).
#
# The controller simulator drives a lawn-mower pattern of 7 lanes of 320 m,
# 120 m apart, at 25 m/s around a transmitter at its centre whose level falls
# fast enough that channel 1 passes through all four colour bands of the
# Plot; veldor.exe under Wine records it at one record a second, as an
# operator would: F1, a text tag (F5) at the east gate, at the mast, at the
# farm track, F2 at the end of the pattern (about two minutes), a last tag,
# File > Save As, File > Exit.
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD_ROOT_DIR="${VELDOR_BUILD_ROOT:-$ROOT/build}"
OUT="$ROOT/docs/package/Sample.DAT"

bash "$ROOT/scripts/install-deps.sh"
cmake -S "$ROOT" -B "$BUILD_ROOT_DIR/native" -G Ninja >/dev/null
ninja -C "$BUILD_ROOT_DIR/native" controller-sim
cmake -S "$ROOT" -B "$BUILD_ROOT_DIR/win64" -G Ninja \
  -DCMAKE_TOOLCHAIN_FILE="$ROOT/cmake/toolchain-mingw64.cmake" >/dev/null
ninja -C "$BUILD_ROOT_DIR/win64" veldor veldor_probe status_hook

# The end-to-end scenarios' steps drive the program; the log and the
# screenshots stay in build/win64/e2e/sample-survey.
E2E_SCENARIO=sample-survey
set -- "$BUILD_ROOT_DIR/win64" "$BUILD_ROOT_DIR/native"
# shellcheck source=../tests/e2e/lib.sh
source "$ROOT/tests/e2e/lib.sh"

# tag TEXT: F5, the last record offered, TEXT, OK.
tag() {
  e2e_key F5
  e2e_expect "F5 did not open \"Add/Edit Tag Text\"" -t 10 window="Add/Edit Tag Text"
  e2e_key Tab
  e2e_type "$1"
  e2e_key Return
  e2e_expect "the tag \"$1\" was not taken" -t 10 nowindow="Add/Edit Tag Text"
  echo "sample: tag \"$1\" at sample $(e2e_samples_sent)"
}
# until_sample N: waits until the simulator has sent sample N (from 0).
until_sample() { e2e_wait_samples $(($1 + 1 - $(e2e_samples_sent))) 60 || e2e_fail "the simulator stopped sending"; }

e2e_fresh_settings
e2e_setting General "Record Interval Seconds" 1
e2e_start_linked --lanes 7 --lane-length 320 --lane-spacing 120 --speed 25 --level 380 --fall 150
e2e_key F1
e2e_expect "F1 did not start recording" -t 10 pane1=Recording
first=$(e2e_samples_sent)
echo "sample: recording from sample $first"
until_sample 13 && tag "Lane 1 east end, farm gate"
until_sample 59 && tag "Passing the mast"
until_sample 90 && tag "Farm track crossing"
# Sample 118 is the last of the pattern: 2960 m at 25 m a second.
until_sample 118
sleep 1
e2e_key F2
e2e_expect "F2 did not stop recording" -t 10 pane1=Idle
tag "End of run, west corner"
e2e_save_as "$ART/Sample.DAT"
e2e_view_shot saved
e2e_quit

# Channel 1 in every colour band, and the tags, or the file is not kept.
PYTHONPATH="$ROOT/tests" python3 - "$ART/Sample.DAT" <<'EOF' || e2e_fail "the survey is not fit to be the sample"
import sys, veldor_dat as v
survey = v.read(sys.argv[1])
bands = [sum(1 for r in survey.records if v.band(r.ch[0]) == b) for b in range(4)]
print(f"sample: {len(survey.records)} records, channel 1 in the bands High {bands[0]}, Mid {bands[1]}, "
      f"Low {bands[2]}, None {bands[3]}; {len(survey.tags)} tags")
sys.exit(0 if len(survey.records) >= 100 and min(bands) > 0 and len(survey.tags) == 4 and not survey.problems else 1)
EOF
cp "$ART/Sample.DAT" "$OUT"
e2e_pass "$OUT written ($(stat -c %s "$OUT") bytes)"
