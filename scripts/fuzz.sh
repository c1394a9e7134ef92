#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for a bounded time.
# Usage: fuzz.sh BUILD_DIR SECONDS
# Known crash inputs kept under tests/data/fuzz/<target>/ are replayed first.
# A new finding fails the run; keep it under that folder with a name that
# says what it broke, then fix the code.
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD="${1:?build dir}"
SECONDS_PER_TARGET="${2:-60}"

CC=clang CXX=clang++ cmake -S "$ROOT" -B "$BUILD" -G Ninja -DVELDOR_FUZZ=ON \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_CXX_FLAGS="-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all" \
  -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=address,undefined" >/dev/null
ninja -C "$BUILD"

status=0
for target in "$BUILD"/fuzz_*; do
  [ -x "$target" ] || continue
  name="$(basename "$target")"
  corpus="$BUILD/corpus/$name"
  artifacts="$BUILD/artifacts/$name/"
  mkdir -p "$corpus" "$artifacts"
  known="$ROOT/tests/data/fuzz/$name"
  if [ -d "$known" ] && [ -n "$(ls -A "$known")" ]; then
    echo "$name: replaying $(ls "$known" | wc -l) kept inputs"
    "$target" "$known"/* >/dev/null 2>&1 || { echo "$name: a kept input fails"; status=1; }
  fi
  # The hand-made test files are the starting corpus.
  seeds=()
  case "$name" in
    fuzz_data_file) seeds=("$ROOT/tests/data/datafiles") ;;
    fuzz_cal_file) seeds=("$ROOT/tests/data/cal") ;;
  esac
  echo "$name: fuzzing for ${SECONDS_PER_TARGET} s"
  if "$target" -max_total_time="$SECONDS_PER_TARGET" -max_len=4096 -timeout=10 \
      -artifact_prefix="$artifacts" -print_final_stats=1 "$corpus" "${seeds[@]}" \
      >"$BUILD/$name.log" 2>&1; then
    grep -E "stat::number_of_executed_units|stat::peak_rss_mb" "$BUILD/$name.log" | sed "s/^/$name: /"
    echo "$name: no finding"
  else
    tail -40 "$BUILD/$name.log"
    echo "$name: FINDING, inputs in $artifacts"
    status=1
  fi
done
exit $status
