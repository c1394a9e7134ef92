#!/usr/bin/env bash
# A copy of veldor.exe with no Default.cal or Colours.txt beside it and a settings file of absurd
# values: four boxes "Error opening calibration file\n'<folder>\Default.cal'", nothing else; then
# the port opens, the four child windows show, recording stores records, the exit writes its keys.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

APP="$ART/app"
mkdir -p "$APP"
cp "$EXE" "$APP/veldor.exe"
APP_WIN="$(e2e_winpath "$APP")"

e2e_settings <<'EOF'
General|Record Interval Seconds=-7|Record Interval Meters=0|Autosave Interval=-3|Autosave Enable=7
General|Max plot time=-1|Earth Radius (km)=0|Averaging=12345|Show Path=-2
TZR4100|Number of channels=100000|Input channel=-40|Inital channel=999|Enable TZR4100 mode=1
Listing|Lat/Long=99|Sign=-5|Decimal places=1000|Origin X=-3000|Width=100000|FontSize=-50
Listing|FontName=AVeryLongFontNameThatNoSystemHasAVeryLongFontNameThatNoSystemHasAVeryLongFontNameThatNoSystemHas
Chart|Channel=77|Height=-400
Plot|Channel=-9|Power break 1=banana|Power break 2=1e39|Power break 3=-1e39|Dot size=2000000000
Text Tags|Origin Y=99999
Main window|Origin X=-500|Origin Y=900000|Width=3|Height=-20|Maximised=5
Setup|Status=1
EOF
cp "$INI" "$ART/VELDOR_before.ini"

e2e_start_sim
e2e_start_program "$APP/veldor.exe"

e2e_focus
expected='Error opening calibration file\n'"'$APP_WIN\\Default.cal'"
# Each box is told from the one before by its handle.
seen=""
for channel in 1 2 3 4; do
  e2e_until 20 'e2e_wait -t 1 window=VELDOR &&
      box="$(sed -n "s/^window=#32770|VELDOR|[01]|//p" "$ART/last_probe.txt" | sed -n 1p)" &&
      [ -n "$box" ] && [[ " $seen " != *" $box "* ]]' || e2e_fail "box $channel of the missing calibration file did not come"
  grep -q -F -x "control=Static|65535|$expected" "$ART/last_probe.txt" ||
    e2e_fail "box $channel says: $(sed -n 's/^control=Static|65535|//p' "$ART/last_probe.txt")"
  grep -q -x 'control=Button|[0-9]*|OK' "$ART/last_probe.txt" || e2e_fail "box $channel has no OK button"
  [ "$channel" = 1 ] && e2e_shot cal_box
  seen="$seen $box"
  e2e_key Return
done
e2e_expect_status "Port opened" 20
e2e_expect "a fifth box came" -t 5 nowindow=VELDOR frames=1
e2e_pass "four boxes \"Error opening calibration file\\n'$APP_WIN\\Default.cal'\", then the port opened"

e2e_close_signon
e2e_expect "the frame is not up after the start" -t 10 enabled=1 caption=VELDOR nowindow=VELDOR
[ "$(grep -c '^child=' "$ART/last_probe.txt")" = 4 ] || e2e_fail "not four child windows"
e2e_shot started
e2e_status_seen "Read calibration file 'Default.cal'" && e2e_fail "a calibration file was read"

e2e_focus
e2e_record F1
e2e_expect "no records at the interval of -7" -t 15 "pane2=0.02 %"
e2e_record F2 nowindow=VELDOR
e2e_shot stopped
e2e_quit n "$APP/veldor.exe"
e2e_expect_ini Setup Status=2
e2e_expect_ini "Main window" "Show tags=1"
e2e_pass "runs, records and exits with absurd settings and no Colours.txt"
