#!/usr/bin/env bash
# The setup program in a fresh prefix: its licence page, Cancel; /S installs the zip's files
# byte for byte, the Start-menu folder and the Uninstall key; the installed veldor.exe reads
# its Default.cal, shows its version in Help > About and counts Sample.DAT; Uninstall.exe /S
# leaves only VELDOR.ini and a survey saved beside.
set -euo pipefail
HERE="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
WIN_DIR="$(cd "$(dirname "${1:-$HERE/../../build/win64}")/win32" && pwd)"
VERSION="$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$WIN_DIR/CMakeCache.txt")"
SETUP="$WIN_DIR/veldor-$VERSION-setup.exe"
ZIP="$WIN_DIR/veldor-$VERSION-win32.zip"
[ -f "$SETUP" ] && [ -f "$ZIP" ] || { echo "scenario install: no $SETUP or $ZIP (cpack in the i686 build)"; exit 2; }
bash "$HERE/../../scripts/i386-root.sh" || { echo "scenario install: no i386 root for the 32-bit Wine"; exit 2; }
export VELDOR_WINEPREFIX="$WIN_DIR/e2e/install/prefix"
set -- "$WIN_DIR" "${2:-$HERE/../../build/native}"
source "$HERE/lib.sh"
export WINEDLLOVERRIDES="$WINEDLLOVERRIDES;winemenubuilder.exe=d"
APP="$WINEPREFIX/drive_c/Program Files/VELDOR"
MENU="$WINEPREFIX/drive_c/ProgramData/Microsoft/Windows/Start Menu/Programs/VELDOR"
KEY='HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\VELDOR'
listing() { (cd "$1" 2>/dev/null && find . -type f -printf '%P\n' | LC_ALL=C sort | tr '\n' '|'); }

e2e_start_desktop
wine explorer "/desktop=$DESKTOP,1024x768" "$SETUP" >>"$ART/wine.log" 2>&1 &
e2e_expect "the setup did not open" -t 60 "topmost=#32770|VELDOR Setup"
e2e_focus
e2e_key Return
e2e_shot licence 2
e2e_key Escape
sleep 1
e2e_key Return
e2e_expect "Cancel did not end the setup" -t 10 "topmost="

wine "$SETUP" /S >>"$ART/wine.log" 2>&1 || e2e_fail "the silent setup ended with status $?"
unzip -q "$ZIP" -d "$ART/unzipped"
diff -r -x Uninstall.exe "$ART/unzipped/veldor-$VERSION-win32" "$APP" >"$ART/diff.txt" && [ -f "$APP/Uninstall.exe" ] ||
  e2e_fail "Program Files\\VELDOR is not the zip and Uninstall.exe: $(head -3 "$ART/diff.txt")"
e2e_same "the Start-menu folder" "$(listing "$MENU")" "Licence.lnk|Operator's Manual.lnk|Uninstall.lnk|VELDOR.lnk|"
wine reg query "$KEY" 2>/dev/null | tr -d '\r' | awk '{ $1 = $1; print }' >"$ART/uninstall_key.txt"
for entry in "DisplayName REG_SZ VELDOR $VERSION" "DisplayVersion REG_SZ $VERSION" \
  "Publisher REG_SZ Trevan Instruments" "UninstallString REG_SZ \"C:\\Program Files\\VELDOR\\Uninstall.exe\""; do
  grep -qxF "$entry" "$ART/uninstall_key.txt" || e2e_fail "the Uninstall key lacks $entry"
done
e2e_pass "/S installed the files of the zip, the four shortcuts and the Uninstall key"

e2e_start_sim
e2e_start_program "$APP/veldor.exe"
e2e_expect_status "Port opened" 30
e2e_same "the reads of the installed Default.cal" "$(e2e_status_lines | grep -c -x "Read calibration file 'Default.cal'")" 4
e2e_close_signon
e2e_expect "a message box at the start" -t 5 nowindow=VELDOR caption=VELDOR
e2e_focus
e2e_menu alt+h a
e2e_expect "no About box" -t 10 window=VELDOR
grep -q "^control=Static|.*Version $VERSION\\\\n" "$ART/last_probe.txt" || e2e_fail "the About box lacks Version $VERSION"
e2e_close_box "the About box did not close"
e2e_open_survey "$APP/Sample.DAT"
gauge="$(python3 "$CHECK_DAT" --gauge "$APP/Sample.DAT")"
e2e_expect "the status bar does not count the sample" -t 5 "pane2=$gauge"
e2e_save_as "$APP/My survey.DAT"
e2e_quit
e2e_expect "VELDOR did not end" -t 15 frames=0
e2e_pass "the installed VELDOR: Default.cal for four channels, Version $VERSION, the sample's $gauge"

wine "$APP/Uninstall.exe" /S >>"$ART/wine.log" 2>&1 || e2e_fail "the silent uninstall ended with status $?"
# The uninstaller goes on from a copy of itself; the Start-menu folder goes last.
e2e_until 30 '[ ! -e "$MENU" ]' || e2e_fail "the Start-menu folder is still there"
e2e_same "Program Files\\VELDOR after the uninstall" "$(listing "$APP")" "My survey.DAT|"
! wine reg query "$KEY" >/dev/null 2>&1 || e2e_fail "the Uninstall key is still there"
[ -f "$INI" ] || e2e_fail "the uninstall took VELDOR.ini"
e2e_pass "Uninstall.exe /S removed the files, the shortcuts and the key, and left VELDOR.ini and the saved survey"
