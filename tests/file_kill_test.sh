#!/bin/sh
# A program killed with SIGKILL while it writes a file leaves every line it
# finished in the file: lines reach the system as they are ended, and the
# only line that may be missing is the one being written.
# Usage: file_kill_test.sh PATH-TO-TESSALINE
set -u
bin=$1
. "$(dirname "$0")/lib.sh"
mkdir -p "$scratch/work"
write_settings "WorkPath=$scratch/work"

# Each line is written in two pieces (the first continued with ";"), so a
# kill can also fall between the pieces of a line.
cat >"$scratch/work/write.bas" <<'BAS'
open "o", 1, "lines.txt"
i = 0
while 1
  i = i + 1
  print #1, "line";
  print #1, i; "end"
wend
BAS

for round in 1 2 3; do
  rm -f "$scratch/work/lines.txt"
  (cd "$scratch/work" && exec "$bin" /c write.bas </dev/null >/dev/null 2>&1) &
  pid=$!
  # Wait until the file has some lines, then kill at once.
  tries=0
  while [ "$( { wc -l <"$scratch/work/lines.txt"; } 2>/dev/null || echo 0)" -lt $((round * 200)) ]; do
    tries=$((tries + 1))
    [ $tries -gt 500 ] && fail "round $round: no lines written"
    sleep 0.01
  done
  kill -KILL "$pid"
  wait "$pid" 2>/dev/null
  pid=
  # Every line in the file is complete and they follow each other from 1.
  awk '
    { expect = NR; if ($0 != "line" sprintf("%13d", expect) "end") { print "line " NR " is \"" $0 "\""; bad = 1; exit } }
    END { if (bad) exit 1 }' "$scratch/work/lines.txt" || fail "round $round: a line is broken"
  # Nothing but a complete line ends the file.
  [ -z "$(tail -c 1 "$scratch/work/lines.txt")" ] || fail "round $round: the file ends inside a line"
  echo "round $round: $(wc -l <"$scratch/work/lines.txt") complete lines"
done
echo "PASS"
