#!/bin/sh
# The log file holds every line shown, even when the process is killed with
# SIGKILL in the middle of a run (each console write reaches the log first).
# Usage: log_kill_test.sh PATH-TO-TESSALINE
set -u
bin=$1
. "$(dirname "$0")/lib.sh"
mkdir -p "$scratch/logs"

cat >"$scratch/count.bas" <<'BAS'
i = 0
while 1
  i = i + 1
  print "line"; i
wend
BAS

for round in 1 2 3; do
  log="$scratch/logs/kill$round.log"
  write_settings CreateLogFile=1 "LogFilePath=$scratch/logs" "LogFileName=kill$round.log"
  shown="$scratch/shown$round"
  (cd "$scratch" && exec "$bin" /c count.bas </dev/null >"$shown" 2>&1) &
  pid=$!
  # Wait for a few thousand lines (a little longer each round), at most 30 seconds.
  want=$((round * 1500))
  tries=0
  while :; do
    count=$(grep -c '^line' "$shown" 2>/dev/null)
    [ "${count:-0}" -lt "$want" ] || break
    tries=$((tries + 1))
    [ "$tries" -le 300 ] || fail "round $round: no output: $(head -c 500 "$shown")"
    sleep 0.1
  done
  kill -KILL "$pid"
  wait "$pid" 2>/dev/null
  pid=
  [ -s "$log" ] || fail "round $round: no log file"
  # Every numbered line shown (the last one too, even cut short) is in the log.
  awk -v shown="$shown" '
    FNR == NR { logged[$0] = 1; whole = whole $0 "\n"; next }
    /^line/ { n++; if (!($0 in logged) && index(whole, $0) == 0) { print "missing: " $0; bad = 1 } }
    END { if (n == 0) { print "nothing shown"; bad = 1 } exit bad }
  ' "$log" "$shown" || fail "round $round: the log misses lines that were shown"
done
echo "ok"
