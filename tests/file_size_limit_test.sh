#!/bin/sh
# A file written past the process's size limit (ulimit -f) is a reported
# write error: Console mode and batch mode go on to their normal end. A
# command started by SPAWN still meets the limit as a signal, as it would
# when started from a shell.
# Usage: file_size_limit_test.sh PATH-TO-TESSALINE
set -u
bin=$1
. "$(dirname "$0")/lib.sh"
export QT_QPA_PLATFORM=offscreen
private_runtime
mkdir -p "$scratch/work"
write_settings "WorkPath=$scratch/work"

cat >"$scratch/work/big.bas" <<'BAS'
open "o", 1, "big.txt"
for i = 1 to 100000
  print #1, "a line long enough to pass the limit soon "; i
next
BAS

for mode in /c --batch; do
  out=$(cd "$scratch/work" && ulimit -f 16 && "$bin" $mode big.bas </dev/null 2>&1)
  status=$?
  [ $status -le 1 ] || fail "$mode: ended with status $status (a signal?)"
  echo "$out" | grep -q "failed: File too large" || fail "$mode: no write failure shown: $out"
  [ "$mode" = /c ] && { echo "$out" | grep -q "Press <enter> to terminate program." || fail "/c: no normal end: $out"; }
  rm -f "$scratch/work/big.txt"
done

# A RANDOM record far past the end: the records skipped over are blanks,
# written until the limit stops them (a write error, and the session goes
# on), or refused before anything is written when the disk could not hold
# them (2^24 records of 32767 bytes, more than a test machine has free).
cat >"$scratch/work/gap.bas" <<'BAS'
open "gap.dat" for random as #1 len = 1000
field #1, 4 as a$
lset a$ = "last" : put #1, 100
BAS
out=$(cd "$scratch/work" && ulimit -f 16 && printf 'print filesize(1)\n\n' | "$bin" /c gap.bas 2>&1)
echo "$out" | grep -q "RANDOM file write error." || fail "gap past the limit: $out"
echo "$out" | grep -q "Command: *8192$" || fail "gap past the limit: the session did not go on: $out"
cat >"$scratch/work/huge.bas" <<'BAS'
open "huge.dat" for random as #1 len = 32767
field #1, 4 as a$
lset a$ = "last" : put #1, 16777216
BAS
free_kb=$(df -Pk "$scratch/work" | awk 'NR == 2 { print $4 }')
if [ "$free_kb" -lt 536000000 ]; then
  out=$(cd "$scratch/work" && timeout -s KILL 20 "$bin" /c huge.bas </dev/null 2>&1)
  echo "$out" | grep -q "(huge.dat) would need 549739003905 bytes, more than the disk has free." ||
    fail "huge gap: $out"
  [ ! -s "$scratch/work/huge.dat" ] || fail "huge gap: blanks were written"
fi
rm -f "$scratch/work/gap.dat" "$scratch/work/huge.dat"

cat >"$scratch/work/spawn.bas" <<'BAS'
spawn "sh -c 'ulimit -f 1; head -c 5000 /dev/zero >spawned.bin; echo $? >status.txt'"
BAS
(cd "$scratch/work" && "$bin" /c spawn.bas </dev/null >/dev/null 2>&1) || fail "spawn program failed"
tries=0
while [ ! -s "$scratch/work/status.txt" ]; do
  tries=$((tries + 1))
  [ $tries -gt 300 ] && fail "the spawned command wrote no status"
  sleep 0.01
done
# 128 + SIGXFSZ (25 on Linux): the shell's child was ended by the signal.
[ "$(cat "$scratch/work/status.txt")" = 153 ] || fail "spawned command: status $(cat "$scratch/work/status.txt"), not 153"
echo ok
