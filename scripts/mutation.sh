#!/usr/bin/env bash
# The mutation check: injects faults into src/ one at a time (a fixed seed
# draws them), rebuilds what each touches in an unoptimised native build and
# counts those the native unit and link tests, and the export tool's tests
# (the analysis room's only tests), catch. Not part of test-all.sh.
#
#   bash scripts/mutation.sh [--seed S] [--count N] [--only GLOB]... [--scenario NAME --win64 DIR]...
#
# Prints "mutation: K of N faults caught (P %)" and the faults that survived.
# Each --scenario adds an end-to-end scenario for the faults that the unit and
# link tests let through (--win64 names an x86_64 build of this tree).
# Build folder: build/mutation (VELDOR_MUTATION_BUILD). The mutated file is put
# back on every exit, a kill included. Run it in a copy of the tree that
# nobody edits meanwhile: it rewrites files of src/ while it runs.
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD="${VELDOR_MUTATION_BUILD:-$ROOT/build/mutation}"

# One run at a time in a build folder: a second would put back the first's faults.
mkdir -p "$BUILD"
exec 9>"$BUILD/mutation.lock"
flock -n 9 || { echo "mutation: another run uses $BUILD" >&2; exit 1; }
trap 'python3 "$ROOT/scripts/mutation.py" restore "$BUILD"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

cmake -S "$ROOT" -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS=-O0 \
  -DVELDOR_SANITIZE=OFF >/dev/null
# The first build of a fresh folder, with no time limit.
nice -n 10 ninja -C "$BUILD" -j1 veldor_unit_tests veldor_link_tests veldor-export controller-sim >/dev/null
nice -n 10 python3 "$ROOT/scripts/mutation.py" run "$BUILD" "$@"
