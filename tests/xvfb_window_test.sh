#!/bin/sh
# The real window under Xvfb: typing "print 6*7" and Enter into the focused
# command field shows 42, and the log (CreateLogFile on) receives it; GRAPH
# typed there opens the graph window, and Ctrl+Q closes both windows.
# Usage: xvfb_window_test.sh PATH-TO-TESSALINE
set -u
bin=$1
fail() { echo "FAIL: $*"; exit 1; }
command -v Xvfb >/dev/null && command -v xdotool >/dev/null || fail "xvfb and xdotool are needed (scripts/install-deps test)"

scratch=$(mktemp -d) || exit 1
xpid=""; wpid=""
trap 'kill $wpid $xpid 2>/dev/null; wait 2>/dev/null; rm -rf "$scratch"' EXIT
export HOME="$scratch/home" XDG_CONFIG_HOME="$scratch/config" XDG_CACHE_HOME="$scratch/cache" XDG_STATE_HOME="$scratch/state"
export XDG_RUNTIME_DIR="$scratch/runtime"
mkdir -p "$HOME" "$XDG_CONFIG_HOME/Ostraval Software" "$scratch/work"
mkdir -m 700 "$XDG_RUNTIME_DIR"
cat >"$XDG_CONFIG_HOME/Ostraval Software/Tessaline.conf" <<CONF
[Settings]
WorkPath=$scratch/work
CreateLogFile=1
LogFilePath=$scratch/work
LogFileName=session.log
CONF

# A free display; the server must answer before the window starts (on a
# busy machine the socket appears well before that, and another test may
# have taken the same number a moment earlier: then try the next one).
d=$((100 + $$ % 400))
for attempt in 1 2 3 4 5; do
  while [ -e "/tmp/.X11-unix/X$d" ] || [ -e "/tmp/.X$d-lock" ]; do d=$((d + 1)); done
  Xvfb ":$d" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
  xpid=$!
  export DISPLAY=":$d"
  up=0
  for i in $(seq 1 150); do
    kill -0 $xpid 2>/dev/null || break
    xdotool getdisplaygeometry >/dev/null 2>&1 && { up=1; break; }
    sleep 0.1
  done
  [ $up = 1 ] && break
  kill $xpid 2>/dev/null; wait $xpid 2>/dev/null
  xpid=""
  d=$((d + 1))
done
[ -n "$xpid" ] || fail "Xvfb did not start"
unset QT_QPA_PLATFORM WAYLAND_DISPLAY

"$bin" >"$scratch/out" 2>&1 &
wpid=$!
win=""
for i in $(seq 1 100); do
  win=$(xdotool search --onlyvisible --name 'Tessaline' 2>/dev/null | head -1)
  [ -n "$win" ] && break
  sleep 0.1
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
# Closing the main window takes the graph window along and ends the program cleanly.
xdotool windowfocus "$win" 2>/dev/null
sleep 0.2
xdotool key ctrl+q
for i in $(seq 1 50); do kill -0 $wpid 2>/dev/null || break; sleep 0.1; done
kill -0 $wpid 2>/dev/null && fail "the window did not close on Ctrl+Q"
wait $wpid; rc=$?
[ $rc -eq 0 ] || fail "exit status $rc: $(cat "$scratch/out")"
wpid=""
echo "window under Xvfb: passed"
