#!/usr/bin/env bash
# A second start while the program runs. The first frame is minimised and
# another program (Notepad) stands in front; then veldor.exe is started
# again:
#   - the second copy ends by itself, having created nothing: one frame,
#     the same four child windows, no status text of its own, no second
#     opening of the port;
#   - the first frame is restored and brought in front of Notepad;
#   - the first copy goes on as before and exits normally.
set -euo pipefail
E2E_SCENARIO=second_start
# shellcheck source=lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

e2e_fresh_settings
e2e_start_sim
e2e_start_program
e2e_wait_status "Port opened" 30 || e2e_fail "the first copy opened no port"
e2e_close_signon
e2e_expect "the first copy is not up" -t 10 frames=1
children_before="$(grep '^child=' "$ART/last_probe.txt" | sort | tr '\n' ',')"

# Minimised through its system menu, then another program in front.
e2e_focus
e2e_key alt+space
e2e_expect "the system menu did not open" -t 5 window=
e2e_key n
e2e_expect "the frame did not minimise" -t 10 iconic=1
wine explorer "/desktop=$DESKTOP,1024x768" notepad >>"$ART/wine.log" 2>&1 &
e2e_expect "Notepad did not come in front" -t 20 "topmost~Notepad|"
e2e_shot before_second_start

lines_before=$(wc -l <"$STATUS_LINES")
banners_before=$(grep -c "BANNER VELDOR" "$SIM_LOG" || true)
wine explorer "/desktop=$DESKTOP,1024x768" "$EXE" >>"$ART/wine.log" 2>&1
deadline=$((SECONDS + 20))
until [ "$(pgrep -c -f "^$EXE" || true)" = 1 ]; do
  [ $SECONDS -lt $deadline ] || e2e_fail "the second copy did not end ($(pgrep -c -f "^$EXE" || true) running)"
  sleep 0.2
done
e2e_expect "the first frame was not brought back in front" -t 10 frames=1 iconic=0 \
  "topmost=Veldor_Frame|VELDOR"
e2e_shot after_second_start
children_after="$(grep '^child=' "$ART/last_probe.txt" | sort | tr '\n' ',')"
[ "$children_after" = "$children_before" ] || e2e_fail "child windows changed: $children_after"
new_texts="$(tail -n +$((lines_before + 1)) "$STATUS_LINES" | grep -v -e ' pane2=' || true)"
[ -z "$new_texts" ] || e2e_fail "status texts after the second start: $new_texts"
[ "$(grep -c "BANNER VELDOR" "$SIM_LOG" || true)" = "$banners_before" ] ||
  e2e_fail "the port was opened again"
e2e_pass "the second copy ended; one frame, restored and in front, nothing new"

# The first copy goes on.
e2e_focus
e2e_key F1
e2e_expect "the first copy does not take F1" -t 10 pane1=Recording
e2e_key F2
e2e_expect "the first copy does not take F2" -t 10 pane1=Idle
e2e_key alt+f
e2e_expect "the File menu did not open" -t 5 window=
e2e_key x
# At the interval of 5 seconds no record came between F1 and F2: no question.
e2e_wait_exit 15
e2e_wait_log "RX OP 0" 5 || e2e_fail "no OP 0 at exit"
e2e_pass "the first copy runs on and exits"
e2e_check_answering
