#!/usr/bin/env bash
# The package as a field engineer installs it: the ZIP of the i686 build
# ($VELDOR_PACKAGE, else <build root>/win32; skipped when there is none)
# unzipped into a fresh folder, the x86_64 twin of veldor.exe in place of the
# i686 one (this Wine runs 64-bit programs only):
#   - started there with no settings, it reads the package's Default.cal for
#     the four channels with no message box, and opens the port;
#   - Help > About shows "Version <project version>"; File > Exit ends it.
set -euo pipefail
WIN64_DIR="$(cd "${1:-$(dirname "${BASH_SOURCE[0]}")/../../build/win64}" && pwd)"
VERSION="$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$WIN64_DIR/CMakeCache.txt")"
ZIP="${VELDOR_PACKAGE:-$(dirname "$WIN64_DIR")/win32/veldor-$VERSION-win32.zip}"
if [ -z "${VELDOR_PACKAGE:-}" ] && [ ! -f "$ZIP" ]; then
  echo "scenario package: skipped, no package $ZIP (cpack in the i686 build makes it)"
  exit 0
fi
E2E_SCENARIO=package
# shellcheck source=lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
unzip -q "$ZIP" -d "$ART/unpacked" || e2e_fail "cannot unzip $ZIP"
APP="$ART/unpacked/veldor-$VERSION-win32"
cp "$EXE" "$APP/veldor.exe"
rm -f "$INI"
e2e_start_sim
e2e_start_program "$APP/veldor.exe"

e2e_wait_status "Port opened" 30 || e2e_fail "the port did not open"
[ "$(e2e_status_lines | grep -c -x "Read calibration file 'Default.cal'")" = 4 ] ||
  e2e_fail "the package's Default.cal was not read for the four channels"
e2e_close_signon
e2e_expect "a message box at the start" -t 5 nowindow=VELDOR caption=VELDOR
e2e_pass "started from the package: Default.cal read for four channels, no box, port opened"

e2e_focus
e2e_key alt+h
e2e_expect "the Help menu did not open" -t 5 window=
e2e_key a
e2e_expect "no About box" -t 10 window=VELDOR
grep -q "^control=Static|.*Version $VERSION\\\\n" "$ART/last_probe.txt" ||
  e2e_fail "the About box does not show Version $VERSION: $(grep '^control=Static' "$ART/last_probe.txt")"
e2e_shot about
e2e_key Return
e2e_expect "the About box did not close" -t 10 nowindow=VELDOR
e2e_pass "Help > About shows Version $VERSION"
e2e_key alt+f
e2e_expect "the File menu did not open" -t 5 window=
e2e_key x
e2e_wait_exit 15 "$APP/veldor.exe"
