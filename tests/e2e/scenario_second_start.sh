#!/usr/bin/env bash
# A second start while the program runs, minimised behind Notepad: the second copy ends by
# itself having created nothing (one frame, the same child windows, no status text, no second
# port opening); the first frame is restored in front, goes on and exits normally.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

e2e_start_sim
e2e_start_program
e2e_expect_status "Port opened" 30
e2e_close_signon
e2e_expect "the first copy is not up" -t 10 frames=1
children_before="$(grep '^child=' "$ART/last_probe.txt" | sort | tr '\n' ',')"

e2e_focus
e2e_menu alt+space n
e2e_expect "the frame did not minimise" -t 10 iconic=1
wine explorer "/desktop=$DESKTOP,1024x768" notepad >>"$ART/wine.log" 2>&1 &
e2e_expect "Notepad did not come in front" -t 20 "topmost~Notepad|"
e2e_shot before_second_start

lines_before=$(wc -l <"$STATUS_LINES")
banners_before=$(grep -c "BANNER VELDOR" "$SIM_LOG" || true)
wine explorer "/desktop=$DESKTOP,1024x768" "$EXE" >>"$ART/wine.log" 2>&1
e2e_until 20 '[ "$(pgrep -c -f "^$EXE" || true)" = 1 ]' ||
  e2e_fail "the second copy did not end ($(pgrep -c -f "^$EXE" || true) running)"
e2e_expect "the first frame was not brought back in front" -t 10 frames=1 iconic=0 \
  "topmost=Veldor_Frame|VELDOR"
e2e_shot after_second_start
e2e_same "the child windows" "$(grep '^child=' "$ART/last_probe.txt" | sort | tr '\n' ',')" "$children_before"
e2e_same "the status texts after the second start" "$(tail -n +$((lines_before + 1)) "$STATUS_LINES" | grep -v ' pane2=' || true)" ""
e2e_same "the banners (a second port opening)" "$(grep -c "BANNER VELDOR" "$SIM_LOG" || true)" "$banners_before"
e2e_pass "the second copy ended; one frame, restored and in front, nothing new"

# The first copy goes on; at the interval of 5 seconds no record comes
# between F1 and F2, so the exit asks nothing.
e2e_focus
e2e_record F1
e2e_record F2
e2e_quit
e2e_pass "the first copy runs on and exits"
