#!/bin/sh
# Under a memory limit, a long number whose text needs more memory than the
# process may have ends its statement with "LONGMATH - Memory allocation
# failed." and the session goes on; one with a huge exponent in floating-point
# mode needs only the memory of its short text, in PRINT, WRITE, ?? and PRINTALL.
# Usage: memory_limit_test.sh PATH-TO-TESSALINE
set -u
bin=$1
. "$(dirname "$0")/lib.sh"
export QT_QPA_PLATFORM=offscreen

fail() { echo "FAIL: $*"; cat "$scratch/out"; exit 1; }

# 10^512000000 in integer mode is 512 million digits; 10^640000000 in
# floating-point mode prints as 1.e+640000000.
cat >"$scratch/in" <<'BAS'
integer
long x
x = long("1e1000000")
for i = 1 to 9 : x = x * x : next
print x
print "still here"
float
long y
y = exp10(long(10000000))
for i = 1 to 6 : y = y * y : next
print y
?? y
write y
printall "variables"
BAS

(ulimit -v 400000 && "$bin" /c <"$scratch/in" >"$scratch/out" 2>&1)
status=$?
[ "$status" -eq 0 ] || fail "exit status $status"
grep -q "^ERROR - LONGMATH - Memory allocation failed.$" "$scratch/out" || fail "no allocation message"
grep -q "still here" "$scratch/out" || fail "the session did not go on"
[ "$(grep -c "1\.e+640000000$" "$scratch/out")" -eq 4 ] || fail "the floating-point number was not shown four times"
echo "ok"
