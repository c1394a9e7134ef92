#!/usr/bin/env bash
# Builds what is missing and runs VELDOR against the simulated controller.
# For now this is the console harness of the portable core: it opens the
# simulator's port, records one sample a second, and prints the live values
# and the stored records.
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD_ROOT="${VELDOR_BUILD_ROOT:-$ROOT/build}"
SECONDS_TO_RUN="${VELDOR_DEMO_SECONDS:-12}"

bash "$ROOT/scripts/install-deps.sh"
cmake -S "$ROOT" -B "$BUILD_ROOT/native" -G Ninja >/dev/null
ninja -C "$BUILD_ROOT/native" controller-sim link-harness

DEMO="$BUILD_ROOT/demo"
rm -rf "$DEMO"
mkdir -p "$DEMO"
"$BUILD_ROOT/native/tools/controller-sim/controller-sim" --link "$DEMO/COM1" \
  --log "$DEMO/controller.log" --record-file "$DEMO/sent-samples.txt" \
  --duration $((SECONDS_TO_RUN + 10)) &
SIM=$!
trap 'kill $SIM 2>/dev/null || true' EXIT
for _ in $(seq 1 100); do [ -e "$DEMO/COM1" ] && break; sleep 0.05; done

"$BUILD_ROOT/native/tools/link-harness/link-harness" "$DEMO/COM1" "$SECONDS_TO_RUN" \
  "$DEMO/VELDOR.ini" | tee "$DEMO/harness.txt"

echo
echo "controller log:  $DEMO/controller.log"
echo "samples sent:    $DEMO/sent-samples.txt"
echo "harness output:  $DEMO/harness.txt"
echo "settings file:   $DEMO/VELDOR.ini"
