#!/bin/sh
# SIGTERM, SIGHUP and SIGQUIT end the window (offscreen) and batch mode
# cleanly: a running program or a wait for input is stopped, every line
# written to a file is in it, the log holds what was shown, the settings are
# kept, and the process ends by the signal.
# Usage: termination_test.sh PATH-TO-TESSALINE
set -u
bin=$1
. "$(dirname "$0")/lib.sh"
no_display
work=$scratch/work
mkdir -p "$work"

cat >"$work/write.bas" <<'BAS'
open "o", 1, "lines.txt"
i = 0
while 1
  i = i + 1
  print #1, "line"; i
  if i = int(i / 500) * 500 then print "at"; i
wend
BAS
printf 'input "Name"; a$\nprint "never"\n' >"$work/ask.bas"

fresh_settings() {
  write_settings "WorkPath=$work" CreateLogFile=1 "LogFilePath=$work" LogFileName=session.log "RecentCommand0=print 1"
  rm -f "$work/lines.txt" "$work/session.log"
}

# Starts "$@" in the background reading a pipe that stays open (so a wait
# for input waits); tessaline becomes the window program in the same process.
mkfifo "$scratch/input"
exec 9<>"$scratch/input"
start() {
  "$@" <"$scratch/input" >"$scratch/out" 2>&1 &
  pid=$!
}

# Waits (at most 10 s) until file $1 matches pattern $2.
await() {
  tries=0
  until grep -q "$2" "$1" 2>/dev/null; do
    tries=$((tries + 1))
    [ $tries -gt 200 ] && fail "$3: \"$2\" never appeared in $(basename "$1"): $(cat "$scratch/out")"
    sleep 0.05
  done
}

# Sends signal $1 (number $2) and checks the ending: exit status, settings.
end_by() {
  what=$3
  kill -"$1" "$pid"
  tries=0
  while [ -e "/proc/$pid" ] && ! grep -q '^State:.*Z' "/proc/$pid/status" 2>/dev/null; do
    tries=$((tries + 1))
    [ $tries -gt 200 ] && fail "$what: still running 10 s after SIG$1"
    sleep 0.05
  done
  wait "$pid" 2>/dev/null
  rc=$?
  pid=
  [ $rc -eq $((128 + $2)) ] || fail "$what: exit status $rc, not that of SIG$1: $(cat "$scratch/out")"
  grep -q '^RecentCommand0=print 1$' "$conf" || fail "$what: the settings were lost: $(cat "$conf")"
  grep -q "^WorkPath=$work\$" "$conf" || fail "$what: the working folder setting was lost"
}

check_lines() {
  [ -s "$work/lines.txt" ] || fail "$1: nothing written"
  awk '{ if ($0 != "line" sprintf("%13d", NR)) { print "line " NR " is \"" $0 "\""; exit 1 } }' \
    "$work/lines.txt" || fail "$1: a line is broken"
  [ -z "$(tail -c 1 "$work/lines.txt")" ] || fail "$1: the file ends inside a line"
  grep -q 'User interrupted program' "$work/session.log" || fail "$1: the log lacks the interruption"
}

export QT_QPA_PLATFORM=offscreen

# The window, a program writing a file: SIGTERM stops it and closes the window.
fresh_settings
start "$bin" "$work/write.bas"
await "$work/session.log" 'at *1000$' "window SIGTERM"
end_by TERM 15 "window SIGTERM"
check_lines "window SIGTERM"
grep -q "^RecentSourceProgram0=$work/write.bas\$" "$conf" || fail "window SIGTERM: the recent program was not recorded"

# The window waiting for INPUT: SIGHUP ends the wait.
fresh_settings
start "$bin" "$work/ask.bas"
await "$work/session.log" 'Beginning Program Execution' "window SIGHUP"
sleep 0.5
end_by HUP 1 "window SIGHUP"
grep -q never "$work/session.log" && fail "window SIGHUP: the program ran on"

# Batch mode, a program writing a file: SIGTERM; the status says so.
unset QT_QPA_PLATFORM
fresh_settings
start "$bin" --batch "$work/write.bas"
await "$work/session.log" 'at *1000$' "batch SIGTERM"
end_by TERM 15 "batch SIGTERM"
check_lines "batch SIGTERM"
grep -q 'User interrupted program' "$scratch/out" || fail "batch SIGTERM: no message on standard output"
grep -q '^RecentCommand0=print 1$' "$conf" || fail "batch SIGTERM: the settings were lost"

# Batch mode waiting for INPUT on a pipe that stays open: SIGQUIT ends it, without a core file.
fresh_settings
start "$bin" --batch "$work/ask.bas"
await "$scratch/out" 'Name?' "batch SIGQUIT"
end_by QUIT 3 "batch SIGQUIT"
grep -q never "$scratch/out" && fail "batch SIGQUIT: the program ran on"
ls "$work" | grep -q '^core' && fail "batch SIGQUIT: a core file was left"
echo "PASS"
