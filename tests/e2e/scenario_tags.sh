#!/usr/bin/env bash
# Text tags and manual readings on a survey of 300 records, no controller: F5 offers the last
# record, refuses index 0 in silence, saves a new tag in its sorted place; Edit, Show and
# Delete on lines of the list; F4 stores the offered zeros, then the typed values cut to 8
# bits; after File > Close the list is empty and F5 says "No records to tag".
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

SAVED="$ART/saved.DAT"
$VIEWS make "$DAT"

MADE=("0:Tag at record 1" "5:Tag at record 6" "47:Tag at record 48" "150:Tag at record 151" "299:Tag at record 300")
expect_tags() { e2e_same "$1: the file's tags" "$($VIEWS tags "$SAVED" | tr '\n' ' ')" "$(printf '%s ' "${@:2}")"; }

# The Text Tags window lays out its list and buttons in a unit of a quarter
# of the dialog base width: 176 units make the window's width.
tags_point() {
  local ox oy w u
  IFS=, read -r ox oy w _ <<<"$(sed -n 's/^client=Veldor_Tags|//p' "$ART/last_probe.txt")"
  [ -n "$w" ] || e2e_fail "no Text Tags window"
  u=$(((w + 16) / 176))
  echo "$((ox + $1 * u)) $((oy + $2 * u))"
}
# on_line N BUTTON: a click on the first line of the list, Down to line N (from 0),
# then the button Show, Edit (its dialog awaited) or Delete, its top 7, 58 or 75 units down.
on_line() {
  local i
  local -A top=([Show]=7 [Edit]=58 [Delete]=75)
  e2e_wait -t 5 enabled=1 || true
  xdotool mousemove $(tags_point 40 10) click 1
  for ((i = 0; i < $1; i++)); do e2e_key Down; done
  xdotool mousemove $(tags_point 150 $((top[$2] + 7))) click 1
  [ "$2" != Edit ] || e2e_expect "Edit did not open \"$TAG\"" -t 10 window="$TAG"
}
list_lines() {
  PYTHONPATH="$E2E_ROOT_DIR/tests/e2e" python3 -c '
import sys, views_survey as v
s, (ox, oy, w, _) = v.Shot(sys.argv[1]), v.client(sys.argv[2], "Veldor_Tags")
u = (w + 16) // 176
print(sum(any(sum(s.at(ox + x, oy + y)) < 300 for x in range(6 * u, 100 * u)) for y in range(8 * u, 88 * u)))
' "$@"
}
save() { e2e_step ctrl+s "status=Data written to file 'saved.DAT'"; }
TAG="Add/Edit Tag Text"
MANUAL="Take Manual Reading"

e2e_setting "Text Tags" "Origin X" 0 "Text Tags" "Origin Y" 400
e2e_start_on_survey "$DAT" 1
e2e_view_shot opened

# The probe cannot read an edit of another program, so what a dialog offers
# is proved by taking it with OK.
e2e_step F5 "window=$TAG"
e2e_view_shot add_dialog
e2e_step "Tab :Last\ one Return" "nowindow=$TAG"
e2e_step F5 "window=$TAG"
e2e_step ":0 Tab :Gate\ 11 Return" "window=$TAG"
e2e_wait -t 1 nowindow="$TAG" && e2e_fail "OK with index 0 closed the dialog"
e2e_step "shift+Tab :11 Return" "nowindow=$TAG"
e2e_view_shot added
e2e_save_as "$SAVED"
expect_tags "after F5" "${MADE[@]:0:2}" "10:Gate 11" "${MADE[@]:2}" "299:Last one"
e2e_pass "F5: the last record offered, index 0 refused in silence, the tag on record 11 saved in its sorted place"

on_line 2 Edit
e2e_view_shot edit_dialog
e2e_step Return "nowindow=$TAG"
on_line 2 Edit
e2e_step ":12 Tab :Gate\ twelve Return" "nowindow=$TAG"
save
expect_tags "after Edit" "${MADE[@]:0:2}" "11:Gate twelve" "${MADE[@]:2}" "299:Last one"
e2e_pass "Edit: the third line's tag offered as it was, then moved to record 12 with a new text"

on_line 3 Show
e2e_view_shot shown
e2e_check pixels.txt "$VIEWS_PY" plot "$ART/shown.png" "$ART/shown.probe" "$DAT" \
  --channel 0 --cross 47

on_line 2 Delete
on_line 5 Delete
save
expect_tags "after Delete" "${MADE[@]}"
e2e_view_shot deleted
e2e_pass "Show: the Plot's cross hair on record 48; Delete: the tags on record 12 and the second on record 300 gone from the file"

# With no controller the dialog offers 0 in its six edits: OK takes them.
e2e_step F4 "window=$MANUAL; status=Take manual reading"
e2e_view_shot manual_dialog
e2e_step Return "nowindow=$MANUAL"
e2e_step F4 "window=$MANUAL"
e2e_step ":-123456 Tab :654321 Tab :300 Tab :17 Tab :255 Tab :-1" "window=$MANUAL"
e2e_view_shot manual_typed
e2e_step Return "nowindow=$MANUAL"
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

e2e_menu alt+f c
e2e_expect "File > Close did not close the survey" -t 10 caption=VELDOR
e2e_view_shot closed
[ "$(list_lines "$ART/deleted.png" "$ART/deleted.probe")" -gt 20 ] || e2e_fail "no text in the list before Close"
[ "$(list_lines "$ART/closed.png" "$ART/closed.probe")" = 0 ] || e2e_fail "the list is not empty after Close"
e2e_key F5
e2e_box "No records to tag"
e2e_view_shot no_records
e2e_close_box "the box did not close"
e2e_wait -t 2 nowindow="$TAG" || e2e_fail "the dialog opened after \"No records to tag\""
e2e_pass "an empty store: \"No records to tag\" and no dialog"

e2e_quit
