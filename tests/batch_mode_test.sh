#!/bin/sh
# Batch mode: `tessaline --batch FILE.bas` with no display at all prints the
# program's output on standard output and exits 0; a program that ends on an
# error exits 1; INPUT reads standard input; a message box takes its OK and
# the port chooser its first port.
bin=$1
examples=$2
. "$(dirname "$0")/lib.sh"
no_display
unset QT_QPA_PLATFORM

out=$("$bin" --batch "$examples/primes.bas" </dev/null 2>"$scratch/err"); rc=$?
[ $rc -eq 0 ] || fail "primes.bas exited $rc: $(cat "$scratch/err")"
echo "$out" | grep -q "Beginning Program Execution" || fail "no program header: $out"
echo "$out" | grep -Eq '^ +2 +3 +5 +7 ' || fail "no primes: $out"
echo "$out" | grep -Eq ' 97$' || fail "primes incomplete: $out"

printf '10 print "before"\n20 print 1/0\n30 print "after"\n' >"$scratch/error.bas"
out=$("$bin" --batch "$scratch/error.bas" </dev/null 2>&1); rc=$?
[ $rc -eq 1 ] || fail "an erroring program exited $rc"
echo "$out" | grep -q "before" || fail "output before the error lost: $out"
echo "$out" | grep -q "ERROR - Attempt to divide by zero." || fail "no error message: $out"
echo "$out" | grep -q "after" && fail "ran on after the error: $out"

printf '10 input "Name"; a$\n20 print "Hello "; a$\n30 x = messagebox("Sure?", "Ask", "yesno")\n40 print "answer"; x\n' >"$scratch/ask.bas"
out=$(echo World | "$bin" --batch "$scratch/ask.bas" 2>&1); rc=$?
[ $rc -eq 0 ] || fail "ask.bas exited $rc: $out"
echo "$out" | grep -q "Hello World" || fail "INPUT did not read standard input: $out"
echo "$out" | grep -q "Ask: Sure?" || fail "the message box was not shown as a line: $out"
echo "$out" | grep -Eq "answer +6" || fail "the message box did not take Yes: $out"

# INKEY$ reads standard input a character at a time; where it has ended no
# key can come, so a loop waiting for one ends, before its next statement,
# as INPUT ends there.
printf '10 k$ = inkey$\n20 print "[" + k$ + "]"\n30 if k$ = "" then goto 10\n40 goto 10\n' >"$scratch/keys.bas"
out=$(printf 'ab' | timeout -s KILL 20 "$bin" --batch "$scratch/keys.bas" 2>&1); rc=$?
[ $rc -eq 0 ] || fail "keys.bas exited $rc: $(echo "$out" | tail -3)"
[ "$(echo "$out" | grep '^\[' | tr -d '\n')" = "[a][b]" ] || fail "INKEY$ keys: $out"
echo "$out" | grep -q "End of input - program ended." || fail "INKEY$ at the end: $out"

# The port chooser takes the port it proposes (the first found), or is
# cancelled when there is none.
printf 'p$ = browsecommports$("Port")\nprint "got "; p$\n' >"$scratch/port.bas"
out=$("$bin" --batch "$scratch/port.bas" </dev/null 2>&1); rc=$?
if echo "$out" | grep -q '^Port: (no port found)$'; then
  [ $rc -eq 1 ] || fail "a cancelled port choice exited $rc"
  echo "$out" | grep -q "User cancelled from comm port selection dialog." || fail "no cancel message: $out"
else
  port=$(echo "$out" | sed -n 's|^Port: \(/dev/.*\)$|\1|p')
  [ -n "$port" ] && [ -e "$port" ] || fail "no port proposed: $out"
  echo "$out" | grep -qx "got $port" || fail "the proposed port was not the answer: $out"
  [ $rc -eq 0 ] || fail "the port choice exited $rc"
fi

"$bin" --batch </dev/null >/dev/null 2>&1 && fail "--batch without a file was accepted"
"$bin" --batch "$scratch/missing.bas" </dev/null >/dev/null 2>&1 && fail "a missing file exited 0"

# Without a display, a window start says so once and runs Console mode.
out=$(printf 'print 5*5\n\n\n' | "$bin" 2>"$scratch/err"); rc=$?
[ $rc -eq 0 ] || fail "the fallback to Console mode exited $rc"
[ "$(grep -c 'no display' "$scratch/err")" -eq 1 ] || fail "no single line about the display: $(cat "$scratch/err")"
grep -q '/c' "$scratch/err" && grep -q -- '--batch' "$scratch/err" || fail "the line names neither /c nor --batch"
echo "$out" | grep -q ' 25' || fail "Console mode did not run: $out"
echo "batch mode: all passed"
