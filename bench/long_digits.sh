#!/usr/bin/env bash
# Times pi, e, sqrt(2), ln(2), exp(1), sin(1) (radians) and n! (integer mode,
# n the smallest number whose factorial has at least that many digits) at
# 1,000, 10,000 and 100,000 digits with Tessaline's LONG statement, bc -l and
# Python's decimal module, and prints a table of seconds (process start
# included). A time is followed by "!" when the first 15 digits of that
# result differ from Tessaline's. Not part of the test run.
#
# usage: bench/long_digits.sh [path/to/tessaline]    (default: build/tessaline)
# Each measurement is cut off after LIMIT seconds (default 600); DIGITS and
# VALUES choose the rows.
set -uo pipefail

here=$(cd "$(dirname "$0")/.." && pwd)
exe=${1:-$here/build/tessaline}
limit=${LIMIT:-600}
digits_list=${DIGITS:-"1000 10000 100000"}
values_list=${VALUES:-"pi e sqrt2 ln2 exp1 sin1 fact"}

if ! command -v bc >/dev/null; then
  echo "bc is missing; installing it" >&2
  apt-get install -y bc >/dev/null || { echo "could not install bc" >&2; exit 1; }
fi
[ -x "$exe" ] || { echo "no interpreter at $exe (build it first)" >&2; exit 1; }
exe=$(cd "$(dirname "$exe")" && pwd)/$(basename "$exe")  # the programs run in a scratch folder

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# A settings file of its own: the default string space (64 KB) cannot hold
# the 100,000-digit results, and the user's settings stay untouched.
mkdir -p "$work/config/Ostraval Software"
printf '[Settings]\nStringSpace=4000000\n' >"$work/config/Ostraval Software/Tessaline.conf"
# One run before the timed ones: the first start writes the settings file and
# the snapshot that later starts read instead of loading Qt.
printf 'print 1\n' >"$work/bench.bas"
(cd "$work" && XDG_CONFIG_HOME="$work/config" "$exe" /c bench.bas </dev/null >/dev/null 2>&1)

# The first 15 significant digits of a result printed by one of the programs.
leading_digits() {
  grep -v -e "Beginning Program" -e "Command:" -e "Press <enter>" "$1" | tr -cd '0-9' | sed 's/^0*//' | cut -c1-15
}

# Runs a command with the time limit; prints the seconds, ">limit" or
# "error", and leaves the output in $work/out.
timed() {
  local start end rc
  start=$(date +%s.%N)
  timeout "$limit" "$@" >"$work/out" 2>&1
  rc=$?
  end=$(date +%s.%N)
  if [ $rc -eq 124 ]; then echo ">${limit}"; return; fi
  if [ $rc -ne 0 ] || grep -q -i -e "ERROR" -e "syntax" "$work/out"; then echo "error"; return; fi
  echo "$end - $start" | bc -l | xargs printf "%.3f"
}

# The smallest n whose factorial has at least $1 digits.
factorial_n() {
  python3 -c "
import math
n = 1
while math.lgamma(n + 1) / math.log(10) < $1: n += 1
print(n)"
}

tessaline_run() {  # what digits
  local what=$1 n=$2 op mode="float $n"
  case $what in
    pi) op="longpi" ;;
    e) op="longe" ;;
    sqrt2) op="sqr, 2" ;;
    ln2) op="log, 2" ;;
    exp1) op="exp, 1" ;;
    sin1) op="sin, 1" ;;
    fact) op="factorial, $(factorial_n "$n")"; mode="integer" ;;
  esac
  cat >"$work/bench.bas" <<BAS
$mode
radians
dim r\$($(( n / 255 + 2 )))
long r\$, $op
print left\$(r\$(0), 20)
BAS
  (cd "$work" && XDG_CONFIG_HOME="$work/config" timed "$exe" /c bench.bas </dev/null)
}

bc_run() {
  local what=$1 n=$2 expr
  case $what in
    pi) expr="4*a(1)" ;;
    e) expr="e(1)" ;;
    sqrt2) expr="sqrt(2)" ;;
    ln2) expr="l(2)" ;;
    exp1) expr="e(1)" ;;
    sin1) expr="s(1)" ;;
    fact) expr="scale = 0
define f(n) {
  auto i, r
  r = 1
  for (i = 2; i <= n; i++) r *= i
  return (r)
}
f($(factorial_n "$n"))" ;;
  esac
  printf 'scale=%s\n%s\n' "$n" "$expr" >"$work/bench.bc"
  timed bc -l "$work/bench.bc"
}

python_run() {
  local what=$1 n=$2
  local fact_n=1
  [ "$what" = fact ] && fact_n=$(factorial_n "$n")
  cat >"$work/bench.py" <<PY
from decimal import Decimal, getcontext, MAX_EMAX
getcontext().prec = $n + 10
getcontext().Emax = MAX_EMAX
def pi():
    # Machin: pi = 16 atan(1/5) - 4 atan(1/239)
    def atan_inv(x):
        total = term = Decimal(1) / x
        x2 = x * x
        k = 1
        eps = Decimal(10) ** -(getcontext().prec)
        while abs(term) > eps:
            term /= -x2
            k += 2
            total += term / k
        return total
    return 16 * atan_inv(Decimal(5)) - 4 * atan_inv(Decimal(239))
def sin1():
    # Taylor series: the module has no sine.
    x = Decimal(1)
    total = term = x
    x2 = x * x
    k = 1
    eps = Decimal(10) ** -(getcontext().prec)
    while abs(term) > eps:
        term = -term * x2 / ((k + 1) * (k + 2))
        k += 2
        total += term
    return total
def fact():
    getcontext().prec = $n + 20  # every digit of n!
    r = Decimal(1)
    for k in range(2, $fact_n + 1):
        r *= k
    return r
value = {"pi": pi, "e": lambda: Decimal(1).exp(), "sqrt2": lambda: Decimal(2).sqrt(),
         "ln2": lambda: Decimal(2).ln(), "exp1": lambda: Decimal(1).exp(), "sin1": sin1,
         "fact": fact}["$what"]()
print(str(value)[:20])
PY
  timed python3 "$work/bench.py"
}

# Runs one program; prints its time, with "!" when its leading digits differ
# from the reference's (in $work/reference).
run_checked() {
  local time
  time=$("$@")
  if [ "$1" = tessaline_run ]; then
    leading_digits "$work/out" >"$work/reference"
  elif [[ $time != error && $time != ">"* ]] && [ "$(leading_digits "$work/out")" != "$(cat "$work/reference")" ]; then
    time="$time!"
  fi
  echo "$time"
}

printf "%-8s %8s %12s %12s %12s\n" "value" "digits" "tessaline" "bc -l" "python"
for n in $digits_list; do
  for what in $values_list; do
    t=$(run_checked tessaline_run "$what" "$n")
    b=$(run_checked bc_run "$what" "$n")
    p=$(run_checked python_run "$what" "$n")
    printf "%-8s %8s %12s %12s %12s\n" "$what" "$n" "$t" "$b" "$p"
  done
done
