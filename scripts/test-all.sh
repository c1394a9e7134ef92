#!/usr/bin/env bash
# Installs what is missing, builds every target and runs every test layer:
# native unit and link tests, the same with ASan + UBSan; the product, the
# i686 veldor.exe, its package, its unit tests and every end-to-end scenario
# under the 32-bit Wine of an i386 root (made once per machine); the x86_64
# build's unit tests and one scenario under the machine's Wine; the fuzz
# targets for a bounded time; the benchmarks once. Prints the time of each
# layer and one summary line for the product.
set -euo pipefail

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD_ROOT="${VELDOR_BUILD_ROOT:-$ROOT/build}"
FUZZ_SECONDS="${VELDOR_FUZZ_SECONDS:-60}"
JOBS="$(nproc)"
mkdir -p "$BUILD_ROOT"

LAYER_TIMES=()
LAYER=""
LAYER_START=$SECONDS
step() {
  [ -z "$LAYER" ] || LAYER_TIMES+=("$(printf '%6d s  %s' $((SECONDS - LAYER_START)) "$LAYER")")
  LAYER="$1"
  LAYER_START=$SECONDS
  printf '\n==== %s ====\n' "$*"
}
# in_wine BUILD COMMAND...: COMMAND with the Wine of that Windows build (the
# 32-bit one for build/win32): its own prefix, a virtual display and a warm
# wineserver, all ended afterwards.
in_wine() {
  (
    BUILD_ROOT="$1"
    shift
    # shellcheck source=wine-env.sh
    source "$ROOT/scripts/wine-env.sh"
    trap veldor_wine_cleanup EXIT
    "$@"
  )
}

step "packages"
bash "$ROOT/scripts/install-deps.sh"

step "the i386 root of the 32-bit Wine"
bash "$ROOT/scripts/i386-root.sh"

step "native build and tests"
cmake -S "$ROOT" -B "$BUILD_ROOT/native" -G Ninja -DVELDOR_BENCH=ON >/dev/null
ninja -C "$BUILD_ROOT/native" -j "$JOBS"
ctest --test-dir "$BUILD_ROOT/native" --output-on-failure -j "$JOBS"

step "native tests with AddressSanitizer and UndefinedBehaviorSanitizer"
cmake -S "$ROOT" -B "$BUILD_ROOT/asan" -G Ninja -DVELDOR_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug >/dev/null
ninja -C "$BUILD_ROOT/asan" -j "$JOBS"
ctest --test-dir "$BUILD_ROOT/asan" --output-on-failure -j "$JOBS"

step "i686 Windows build (the product) and its package veldor-<version>-win32.zip, checked unzipped"
cmake -S "$ROOT" -B "$BUILD_ROOT/win32" -G Ninja \
  -DCMAKE_TOOLCHAIN_FILE="$ROOT/cmake/toolchain-mingw32.cmake" >/dev/null
ninja -C "$BUILD_ROOT/win32" -j "$JOBS"
(cd "$BUILD_ROOT/win32" && cpack)
bash "$ROOT/tests/package/check_package.sh" "$BUILD_ROOT/win32"

# The product's layers run to their end and count their results for the
# summary line; the command fails at its end when one of them failed.
step "i686 unit tests under the 32-bit Wine"
product_failed=0
# A test that fails under Wine runs once more: Wine has been seen to lose a test
# process at its start, with no output at all. A real fault fails both times.
in_wine "$BUILD_ROOT/win32" ctest --test-dir "$BUILD_ROOT/win32" --output-on-failure -j "$JOBS" --repeat until-pass:2 |
  tee "$BUILD_ROOT/win32/ctest.log" || product_failed=1

step "end-to-end: the i686 veldor.exe under the 32-bit Wine against the controller simulator"
bash "$ROOT/tests/e2e/run_e2e.sh" "$BUILD_ROOT/win32" "$BUILD_ROOT/native" | tee "$BUILD_ROOT/win32/e2e.log" ||
  product_failed=1

step "x86_64 Windows build (the demo's program): unit tests under Wine, the survey scenario"
cmake -S "$ROOT" -B "$BUILD_ROOT/win64" -G Ninja \
  -DCMAKE_TOOLCHAIN_FILE="$ROOT/cmake/toolchain-mingw64.cmake" >/dev/null
ninja -C "$BUILD_ROOT/win64" -j "$JOBS"
in_wine "$BUILD_ROOT/win64" ctest --test-dir "$BUILD_ROOT/win64" --output-on-failure -j "$JOBS" --repeat until-pass:2
bash "$ROOT/tests/e2e/run_e2e.sh" "$BUILD_ROOT/win64" "$BUILD_ROOT/native" survey

step "fuzzing (${FUZZ_SECONDS} s per target)"
bash "$ROOT/scripts/fuzz.sh" "$BUILD_ROOT/fuzz" "$FUZZ_SECONDS"

step "benchmarks"
for b in "$BUILD_ROOT"/native/bench/veldor_bench*; do
  if [ -x "$b" ]; then "$b"; fi
done
# The views' repaints with GDI under the 32-bit Wine; fails when the two
# ways of drawing the plot give different pixels. Then the print scenario's
# times of a full store.
in_wine "$BUILD_ROOT/win32" wine "$BUILD_ROOT/win32/veldor_views_bench.exe" </dev/null
sed 's/ records: / records (i686): /' "$BUILD_ROOT/win32/e2e/print/bench.txt" 2>/dev/null || true

step "summary"
printf '%s\n' "${LAYER_TIMES[@]}"
read -r unit_total unit_failed _ <<<"$(awk '/ tests failed out of / { print $NF, $(NF - 5) }' \
  "$BUILD_ROOT/win32/ctest.log") 0 0"
e2e_passed="$(grep -c '^  passed  ' "$BUILD_ROOT/win32/e2e.log" || true)"
e2e_total="$(grep -c -E '^  (passed|FAILED)  ' "$BUILD_ROOT/win32/e2e.log" || true)"
echo "32-bit program: unit $((unit_total - unit_failed)) of $unit_total, end-to-end $e2e_passed of $e2e_total scenarios"
[ "$product_failed" -eq 0 ] || { echo "the 32-bit program failed some of its tests (above)"; exit 1; }
echo "all test layers passed"
