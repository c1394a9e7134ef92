#!/usr/bin/env bash
# Runs the end-to-end scenarios (scenario_*.sh) on one virtual display and
# prints each one's result and time; non-zero when one failed.
# usage: run_e2e.sh [WINDOWS_BUILD_DIR] [NATIVE_BUILD_DIR] [SCENARIO...]
set -euo pipefail

HERE="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
ROOT="$(cd "$HERE/../.." && pwd)"
WIN="$(cd "${1:-$ROOT/build/win32}" && pwd)"
NATIVE="$(cd "${2:-$ROOT/build/native}" && pwd)"
shift $(($# < 2 ? $# : 2))
SCENARIOS=("$@")
if [ ${#SCENARIOS[@]} -eq 0 ]; then
  SCENARIOS=(startup_exit survey views records gps tags calibration general instruments faults port_error second_start bad_files replay install print)
fi

rm -rf "$WIN/e2e"
mkdir -p "$WIN/e2e"

export BUILD_ROOT="$WIN" VELDOR_HEADLESS=1
# shellcheck source=../../scripts/wine-env.sh
source "$ROOT/scripts/wine-env.sh"
trap veldor_wine_cleanup EXIT
export E2E_SHARED_DISPLAY="$DISPLAY"
wineserver -k >/dev/null 2>&1 || true
wineserver -w >/dev/null 2>&1 || true

summary=()
failed=0
for scenario in "${SCENARIOS[@]}"; do
  start=$SECONDS
  result=passed
  bash "$HERE/scenario_$scenario.sh" "$WIN" "$NATIVE" || result=FAILED
  summary+=("$result  $scenario ($((SECONDS - start)) s)")
  [ "$result" = passed ] || failed=1
done

echo
echo "end-to-end scenarios (artefacts in $WIN/e2e):"
printf '  %s\n' "${summary[@]}"
exit $failed
