#!/usr/bin/env bash
# Installs what is missing, builds every target and runs every test layer:
# native unit and link tests, the same with ASan + UBSan, the unit tests
# cross-built for Windows and run under Wine, the 32-bit Windows link, the
# end-to-end scenarios of veldor.exe under Wine, the fuzz targets for a
# bounded time, and the benchmarks once.
set -euo pipefail

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD_ROOT="${VELDOR_BUILD_ROOT:-$ROOT/build}"
FUZZ_SECONDS="${VELDOR_FUZZ_SECONDS:-60}"
JOBS="$(nproc)"
mkdir -p "$BUILD_ROOT"

step() { printf '\n==== %s ====\n' "$*"; }

step "packages"
bash "$ROOT/scripts/install-deps.sh"

step "native build and tests"
cmake -S "$ROOT" -B "$BUILD_ROOT/native" -G Ninja -DVELDOR_BENCH=ON >/dev/null
ninja -C "$BUILD_ROOT/native" -j "$JOBS"
ctest --test-dir "$BUILD_ROOT/native" --output-on-failure -j "$JOBS"

step "native tests with AddressSanitizer and UndefinedBehaviorSanitizer"
cmake -S "$ROOT" -B "$BUILD_ROOT/asan" -G Ninja -DVELDOR_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug >/dev/null
ninja -C "$BUILD_ROOT/asan" -j "$JOBS"
ctest --test-dir "$BUILD_ROOT/asan" --output-on-failure -j "$JOBS"

step "i686 Windows build (the product; checked by linking)"
cmake -S "$ROOT" -B "$BUILD_ROOT/win32" -G Ninja \
  -DCMAKE_TOOLCHAIN_FILE="$ROOT/cmake/toolchain-mingw32.cmake" >/dev/null
ninja -C "$BUILD_ROOT/win32" -j "$JOBS"
for exe in "$BUILD_ROOT"/win32/*.exe; do
  echo "linked: $exe ($(file -b "$exe" | cut -d, -f1-2))"
done

step "the Windows package: veldor-<version>-win32.zip, checked unzipped"
(cd "$BUILD_ROOT/win32" && cpack)
bash "$ROOT/tests/package/check_package.sh" "$BUILD_ROOT/win32"

step "x86_64 Windows build, unit tests under Wine"
cmake -S "$ROOT" -B "$BUILD_ROOT/win64" -G Ninja \
  -DCMAKE_TOOLCHAIN_FILE="$ROOT/cmake/toolchain-mingw64.cmake" >/dev/null
ninja -C "$BUILD_ROOT/win64" -j "$JOBS"
# shellcheck source=wine-env.sh
source "$ROOT/scripts/wine-env.sh"
trap veldor_wine_cleanup EXIT
ctest --test-dir "$BUILD_ROOT/win64" --output-on-failure -j "$JOBS"

step "end-to-end: veldor.exe under Wine against the controller simulator"
bash "$ROOT/tests/e2e/run_e2e.sh" "$BUILD_ROOT/win64" "$BUILD_ROOT/native"

step "fuzzing (${FUZZ_SECONDS} s per target)"
bash "$ROOT/scripts/fuzz.sh" "$BUILD_ROOT/fuzz" "$FUZZ_SECONDS"

step "benchmarks"
for b in "$BUILD_ROOT"/native/bench/veldor_bench*; do
  if [ -x "$b" ]; then "$b" --benchmark_min_time=0.05; fi
done
# The views' repaints with GDI under Wine; fails when the two ways of
# drawing the plot give different pixels.
wine "$BUILD_ROOT/win64/veldor_views_bench.exe" </dev/null

step "all test layers passed"
