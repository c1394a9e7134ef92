#!/usr/bin/env bash
# Checks the package cpack made in the i686 build: its files; the programs
# PE32 i386 importing system DLLs only; an A4 manual naming every menu label
# and dialog title; a licence that parses; Colours.txt in format.
# usage: check_package.sh [WIN32_BUILD_DIR]
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
BUILD="$(cd "${1:-$ROOT/build/win32}" && pwd)"
VERSION="$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$BUILD/CMakeCache.txt")"
ZIP="$BUILD/veldor-$VERSION-win32.zip"
SETUP="$BUILD/veldor-$VERSION-setup.exe"
fail() { echo "FAIL [package]: $*"; exit 1; }
[ -f "$ZIP" ] || fail "no package $ZIP"
WORK="$(mktemp -d)"
trap 'rm -rf "$WORK"' EXIT
unzip -q "$ZIP" -d "$WORK"
PKG="$WORK/veldor-$VERSION-win32"
found="$(cd "$PKG" && find . -type f -printf '%P\n' | LC_ALL=C sort | tr '\n' ' ')"
[ "$found" = "Colours.txt Default.cal EULA.rtf README.txt Sample.DAT VELDOR_v2.pdf veldor-export.exe veldor.exe " ] ||
  fail "files: $found"
echo "ok [package]: $(basename "$ZIP") ($(du -k "$ZIP" | cut -f1) KiB): $found"

for entry in "$PKG/veldor.exe:Windows GUI" "$PKG/veldor-export.exe:Windows CUI" "$SETUP:Windows GUI"; do
  exe="${entry%%:*}"
  [ -f "$exe" ] || fail "no $exe"
  headers="$(objdump -p "$exe")"
  grep -q 'file format pei-i386' <<<"$headers" && grep -q '^Magic.*(PE32)$' <<<"$headers" &&
    grep -q "^Subsystem.*(${entry#*:})" <<<"$headers" || fail "$(basename "$exe") is not a PE32 i386 ${entry#*:} program"
  [ "$exe" != "$SETUP" ] || continue
  for dll in $(sed -n 's/^\tDLL Name: //p' <<<"$headers" | tr '[:upper:]' '[:lower:]'); do
    [[ " advapi32.dll comctl32.dll comdlg32.dll gdi32.dll kernel32.dll msvcrt.dll shell32.dll user32.dll " == *" $dll "* ]] ||
      fail "$(basename "$exe") imports $dll"
  done
done
echo "ok [package]: veldor.exe PE32 GUI, veldor-export.exe PE32 console, system DLLs only;" \
  "$(basename "$SETUP") PE32 GUI ($(du -k "$SETUP" | cut -f1) KiB)"

# Labels without the & of access keys and the key names after a tab.
pdfinfo "$PKG/VELDOR_v2.pdf" | grep -q '^Page size:.*(A4)' || fail "pdfinfo: VELDOR_v2.pdf is no A4 PDF"
pdftotext "$PKG/VELDOR_v2.pdf" - | tr -s ' \n\t' '   ' >"$WORK/manual.txt"
labels="$(sed -n 's/^ *\(MENUITEM\|POPUP\) "\([^"]*\)".*/\2/p' "$ROOT/src/resources/veldor.rc"
          sed -n 's/^CAPTION "\([^"]*\)".*/\1/p' "$ROOT"/src/resources/dialogs_*.rc)"
missing=""
while IFS= read -r label; do
  label="${label%%\\t*}"
  grep -q -F -- "${label//&/}" "$WORK/manual.txt" || missing="$missing '${label//&/}'"
done <<<"$labels"
[ -z "$missing" ] || fail "the manual lacks:$missing"
echo "ok [package]: the A4 manual names all $(wc -l <<<"$labels") menu labels and dialog titles"

unrtf --text "$PKG/EULA.rtf" 2>&1 | grep -q "End User Licence Agreement" || fail "EULA.rtf does not parse"
byte='(25[0-5]|2[0-4][0-9]|1?[0-9]?[0-9])'
bad="$(tr -d '\r' <"$PKG/Colours.txt" | grep -v -E "^#|^[HhMmLlNn]([ \t]+$byte){3}\$" || true)"
[ -z "$bad" ] || fail "Colours.txt lines out of format: $bad"
echo "ok [package]: EULA.rtf parses, Colours.txt in format"
