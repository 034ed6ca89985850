#!/bin/sh
# The real window under Xvfb: typing "print 6*7" and Enter into the focused
# command field shows 42, and the log (CreateLogFile on) receives it; GRAPH
# typed there opens the graph window and leaves the keys with the field, and
# Ctrl+Q closes both windows. The window program also waits a moment for a
# display that is still starting.
# Usage: xvfb_window_test.sh PATH-TO-TESSALINE
set -u
bin=$1
. "$(dirname "$0")/lib.sh"
command -v Xvfb >/dev/null && command -v xdotool >/dev/null || fail "xvfb and xdotool are needed (scripts/install-deps test)"

xpid=""; wpid=""
trap 'kill $wpid $xpid 2>/dev/null; wait 2>/dev/null; rm -rf "$scratch"' EXIT
private_runtime
mkdir -p "$scratch/work"
write_settings "WorkPath=$scratch/work" CreateLogFile=1 "LogFilePath=$scratch/work" LogFileName=session.log

# wait_for_window: sets $win to the main window once it shows, for up to ten
# seconds or until the window program ($wpid) has ended.
wait_for_window() {
  win=""
  for i in $(seq 1 100); do
    win=$(xdotool search --onlyvisible --name 'Tessaline' 2>/dev/null | head -1)
    [ -n "$win" ] && break
    kill -0 $wpid 2>/dev/null || break
    sleep 0.1
  done
}

# Xvfb takes a free display itself and names it once it answers (choosing
# one here races with other tests starting servers at the same moment).
Xvfb -displayfd 9 -screen 0 1024x768x24 -nolisten tcp 9>"$scratch/display" >/dev/null 2>&1 &
xpid=$!
for i in $(seq 1 150); do
  [ -s "$scratch/display" ] && break
  kill -0 $xpid 2>/dev/null || break
  sleep 0.1
done
d=$(tr -dc '0-9' <"$scratch/display" 2>/dev/null)
[ -n "$d" ] || fail "Xvfb did not start"
export DISPLAY=":$d"
unset QT_QPA_PLATFORM WAYLAND_DISPLAY

# On a loaded machine the server has now and then refused a connection just
# after it answered: a start that could not reach it is tried once more
# (with a note of whether the server was still there).
for attempt in 1 2; do
  "$bin" >"$scratch/out" 2>&1 </dev/null &
  wpid=$!
  wait_for_window
  [ -n "$win" ] && break
  grep -q -e 'no display' -e 'could not connect to display' "$scratch/out" || break
  kill $wpid 2>/dev/null; wait $wpid 2>/dev/null
  echo "note: the display :$d refused the window (server alive: $(kill -0 $xpid 2>/dev/null && echo yes || echo no))"
  sleep 0.5
done
[ -n "$win" ] || fail "no window appeared: $(cat "$scratch/out")"
xdotool windowfocus "$win" 2>/dev/null
sleep 0.5
xdotool type --delay 20 'print 6*7'
xdotool key Return
log="$scratch/work/session.log"
for i in $(seq 1 50); do grep -q '42' "$log" 2>/dev/null && break; sleep 0.1; done
grep -q '^Command: print 6\*7$' "$log" || fail "the typed line is not in the log: $(cat "$log" 2>/dev/null)"
grep -q ' 42$' "$log" || fail "42 is not in the log: $(cat "$log" 2>/dev/null)"
# GRAPH typed at the command field opens the graph window beside the main one.
xdotool windowfocus "$win" 2>/dev/null
xdotool type --delay 20 'graph width = 4, height = 3: plot x = 1, y = 1: plot x = 2, y = 4'
xdotool key Return
graph=""
for i in $(seq 1 50); do
  graph=$(xdotool search --onlyvisible --name '^Tessaline Graph$' 2>/dev/null | head -1)
  [ -n "$graph" ] && break
  sleep 0.1
done
[ -n "$graph" ] || fail "GRAPH opened no graph window: $(tail -5 "$log" 2>/dev/null)"
grep -q 'ERROR' "$log" && fail "GRAPH failed: $(cat "$log")"
# The command field keeps the keys: the next command typed goes to it.
sleep 0.5
xdotool type --delay 20 'print 7*8'
xdotool key Return
for i in $(seq 1 50); do grep -q ' 56$' "$log" 2>/dev/null && break; sleep 0.1; done
grep -q ' 56$' "$log" || fail "the graph window took the keys from the command field: $(tail -3 "$log" 2>/dev/null)"
# Closing the main window takes the graph window along and ends the program cleanly.
xdotool windowfocus "$win" 2>/dev/null
sleep 0.2
xdotool key ctrl+q
for i in $(seq 1 50); do kill -0 $wpid 2>/dev/null || break; sleep 0.1; done
kill -0 $wpid 2>/dev/null && fail "the window did not close on Ctrl+Q"
wait $wpid; rc=$?
[ $rc -eq 0 ] || fail "exit status $rc: $(cat "$scratch/out")"
wpid=""

# The window program waits a moment for a display that does not yet take
# connections (a bare X server resets itself when its last client leaves):
# here the server starts a little after the window program.
kill $xpid 2>/dev/null; wait $xpid 2>/dev/null
xpid=""
d=$((d + 1))
while [ -e "/tmp/.X11-unix/X$d" ] || [ -e "/tmp/.X$d-lock" ]; do d=$((d + 1)); done
export DISPLAY=":$d"
"$(dirname "$bin")/tessaline-window" >"$scratch/out" 2>&1 </dev/null &
wpid=$!
sleep 0.3
Xvfb ":$d" -screen 0 800x600x24 -nolisten tcp >/dev/null 2>&1 &
xpid=$!
wait_for_window
[ -n "$win" ] || fail "the window did not wait for the display: $(cat "$scratch/out")"
kill -TERM $wpid
wait $wpid; rc=$?
wpid=""
[ $rc -eq 143 ] || fail "SIGTERM ended the window with status $rc"
echo "window under Xvfb: passed"
