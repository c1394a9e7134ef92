#!/usr/bin/env bash
# Text tags and manual readings, with no controller, on the survey of the
# views scenario (views_survey.py: 300 records, tags on records 1, 6, 48,
# 151 and 300) opened through File > Open, with the Text Tags window open:
#   - F5 opens "Add/Edit Tag Text" offering the last record (OK on it adds a
#     second tag on record 300); an index of 0 gets no reaction from OK; a
#     tag typed for record 11 is saved (Save As) in its sorted place, since
#     the Text Tags window sorts the table, and the two tags of record 300
#     keep the order of adding;
#   - the third line of the list, Edit: OK on what the dialog offers changes
#     nothing; then the tag is moved to record 12 with a new text (Save);
#   - the fourth line, Show: the Plot puts its cross hair on record 48;
#   - the third and the last line, Delete: those tags are gone (Save);
#   - F4 opens "Take Manual Reading"; OK on what it offers with no
#     controller stores zeros; the typed position and readings (300 and -1
#     cut to their low 8 bits) become the next record, with flags 0 (Save);
#   - after File > Close the list is empty and F5 says "No records to tag".
set -euo pipefail
E2E_SCENARIO=tags
# shellcheck source=lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
VIEWS="python3 $E2E_ROOT_DIR/tests/e2e/views_survey.py"

DAT="$ART/tags.DAT"
SAVED="$ART/saved.DAT"
$VIEWS make "$DAT"

# expect_tags FILE WHAT RECORD:TEXT...: the file's tags are exactly these.
expect_tags() {
  local file="$1" what="$2" got want
  shift 2
  got="$($VIEWS tags "$file" | tr '\n' ' ')"
  want="$(printf '%s\n' "$@" | tr '\n' ' ')"
  [ "$got" = "$want" ] || e2e_fail "$what: the file's tags are [$got], expected [$want]"
}

# The Text Tags window lays out its list and buttons in a unit of a quarter
# of the dialog base width: 176 units make the window's width.
tags_point() {
  local ox oy w u
  IFS=, read -r ox oy w _ <<<"$(sed -n 's/^client=Veldor_Tags|//p' "$ART/last_probe.txt")"
  [ -n "$w" ] || e2e_fail "no Text Tags window"
  u=$(((w + 16) / 176))
  echo "$((ox + $1 * u)) $((oy + $2 * u))"
}
# button TOP: clicks the button whose top is TOP units down.
button() { xdotool mousemove $(tags_point 150 $(($1 + 7))) click 1; }
# select_line N: clicks the first line of the list, then moves down to line N.
select_line() {
  e2e_wait -t 5 enabled=1 || true
  xdotool mousemove $(tags_point 40 10) click 1
  local i
  for ((i = 0; i < $1; i++)); do e2e_key Down; done
}
# list_lines SHOT PROBE: how many pixel rows of the list's inside hold text.
list_lines() {
  PYTHONPATH="$E2E_ROOT_DIR/tests/e2e" python3 -c '
import sys, views_survey as v
s, (ox, oy, w, _) = v.Shot(sys.argv[1]), v.client(sys.argv[2], "Veldor_Tags")
u = (w + 16) // 176
print(sum(any(sum(s.at(ox + x, oy + y)) < 300 for x in range(6 * u, 100 * u)) for y in range(8 * u, 88 * u)))
' "$@"
}
save() {
  e2e_mark
  e2e_key ctrl+s
  e2e_wait_status "Data written to file 'saved.DAT'" 10 || e2e_fail "Ctrl+S did not save: $(e2e_status_lines | tail -1)"
}

e2e_fresh_settings
e2e_view_layout 1
e2e_settings <<EOF
Text Tags|Origin X|0
Text Tags|Origin Y|400
EOF
e2e_start_on_survey "$DAT"
e2e_view_shot opened

# ---- F5: new tags -------------------------------------------------------------------------------------
# The probe cannot read an edit of another program, so what a dialog offers
# is proved by taking it with OK.
e2e_key F5
e2e_expect "F5 did not open \"Add/Edit Tag Text\"" -t 10 window="Add/Edit Tag Text"
e2e_view_shot add_dialog
e2e_key Tab
e2e_type "Last one"
e2e_key Return
e2e_expect "OK on the offered index did not close the dialog" -t 10 nowindow="Add/Edit Tag Text"
e2e_key F5
e2e_expect "F5 did not open \"Add/Edit Tag Text\" again" -t 10 window="Add/Edit Tag Text"
e2e_type "0"
e2e_key Tab
e2e_type "Gate 11"
e2e_key Return
sleep 1
e2e_wait -t 0 window="Add/Edit Tag Text" || e2e_fail "OK with index 0 closed the dialog"
e2e_key shift+Tab
e2e_type "11"
e2e_key Return
e2e_expect "OK with index 11 did not close the dialog" -t 10 nowindow="Add/Edit Tag Text"
e2e_view_shot added
e2e_save_as "$SAVED"
expect_tags "$SAVED" "after F5" "0:Tag at record 1" "5:Tag at record 6" "10:Gate 11" "47:Tag at record 48" \
  "150:Tag at record 151" "299:Tag at record 300" "299:Last one"
e2e_pass "F5: the last record offered, index 0 refused in silence, the tag on record 11 saved in its sorted place"

# ---- Edit the third line ----------------------------------------------------------------------------
select_line 2
button 58
e2e_expect "Edit did not open \"Add/Edit Tag Text\"" -t 10 window="Add/Edit Tag Text"
e2e_view_shot edit_dialog
e2e_key Return
e2e_expect "OK on the third line's tag as offered did not close the dialog" -t 10 nowindow="Add/Edit Tag Text"
select_line 2
button 58
e2e_expect "Edit did not open \"Add/Edit Tag Text\" again" -t 10 window="Add/Edit Tag Text"
e2e_type "12"
e2e_key Tab
e2e_type "Gate twelve"
e2e_key Return
e2e_expect "OK did not close the edited tag's dialog" -t 10 nowindow="Add/Edit Tag Text"
save
expect_tags "$SAVED" "after Edit" "0:Tag at record 1" "5:Tag at record 6" "11:Gate twelve" "47:Tag at record 48" \
  "150:Tag at record 151" "299:Tag at record 300" "299:Last one"
e2e_pass "Edit: the third line's tag offered as it was, then moved to record 12 with a new text"

# ---- Show the fourth line -----------------------------------------------------------------------------
select_line 3
button 7
e2e_view_shot shown
e2e_check pixels.txt "$E2E_ROOT_DIR/tests/e2e/views_survey.py" plot "$ART/shown.png" "$ART/shown.probe" "$DAT" \
  --channel 0 --cross 47
e2e_pass "Show: the Plot's cross hair on record 48"

# ---- Delete the third and the last line -----------------------------------------------------------------
select_line 2
button 75
select_line 5
button 75
save
expect_tags "$SAVED" "after Delete" "0:Tag at record 1" "5:Tag at record 6" "47:Tag at record 48" \
  "150:Tag at record 151" "299:Tag at record 300"
e2e_view_shot deleted
e2e_pass "Delete: the tags on record 12 and the second on record 300 gone from the file"

# ---- F4: manual readings --------------------------------------------------------------------------------
# With no controller the dialog offers 0 in its six edits: OK takes them.
e2e_mark
e2e_key F4
e2e_expect "F4 did not open \"Take Manual Reading\"" -t 10 window="Take Manual Reading"
e2e_view_shot manual_dialog
e2e_wait_status "Take manual reading" 5 || e2e_fail "no \"Take manual reading\""
e2e_key Return
e2e_expect "OK did not close \"Take Manual Reading\"" -t 10 nowindow="Take Manual Reading"
e2e_key F4
e2e_expect "F4 did not open \"Take Manual Reading\" again" -t 10 window="Take Manual Reading"
# xdotool takes a leading "-" for an option: the minus signs go as keys.
e2e_key minus
e2e_type "123456"
e2e_key Tab
e2e_type "654321"
for value in 300 17 255; do
  e2e_key Tab
  e2e_type "$value"
done
e2e_key Tab minus 1
e2e_view_shot manual_typed
e2e_key Return
e2e_expect "OK did not close \"Take Manual Reading\" after typing" -t 10 nowindow="Take Manual Reading"
save
PYTHONPATH="$E2E_ROOT_DIR/tests/e2e" python3 -c '
import sys, views_survey as v
before, after = v.read_records(sys.argv[1]), v.read_records(sys.argv[2])
want = before + [(0, (0, 0, 0, 0), 0, 0), (0, (44, 17, 255, 255), -123456, 654321)]
print("records", len(after), "last two", after[-2:])
sys.exit(0 if after == want else 1)
' "$DAT" "$SAVED" >>"$ART/records.txt" 2>&1 ||
  e2e_fail "the saved file is not the survey and the two manual records: $(tail -1 "$ART/records.txt")"
e2e_pass "F4: record 301 with the offered zeros, record 302 at (-123456, 654321) with readings 44 17 255 255, flags 0"

# ---- No records to tag ---------------------------------------------------------------------------------
e2e_key alt+f
e2e_expect "the File menu did not open" -t 5 window=
e2e_key c
e2e_expect "File > Close did not close the survey" -t 10 caption=VELDOR
e2e_view_shot closed
[ "$(list_lines "$ART/deleted.png" "$ART/deleted.probe")" -gt 20 ] || e2e_fail "no text in the list before Close"
[ "$(list_lines "$ART/closed.png" "$ART/closed.probe")" = 0 ] || e2e_fail "the list is not empty after Close"
e2e_key F5
e2e_expect "F5 on an empty store showed no box" -t 10 window=VELDOR
e2e_view_shot no_records
grep -q '^control=Static|.*|No records to tag$' "$ART/last_probe.txt" ||
  e2e_fail "the box does not say \"No records to tag\": $(grep '^control=Static' "$ART/last_probe.txt" | tr '\n' ' ')"
e2e_key Return
e2e_expect "the box did not close" -t 10 nowindow=VELDOR
e2e_wait -t 2 nowindow="Add/Edit Tag Text" || e2e_fail "the dialog opened after \"No records to tag\""
e2e_pass "an empty store: \"No records to tag\" and no dialog"

e2e_quit
