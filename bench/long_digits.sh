#!/usr/bin/env bash
# Times pi, e, sqrt(2) and ln(2) at 1,000, 10,000 and 100,000 digits with
# Tessaline's LONG statement, bc -l and Python's decimal module, and prints a
# table of seconds. Not part of the test run.
#
# usage: bench/long_digits.sh [path/to/tessaline]    (default: build/tessaline)
# Each measurement is cut off after LIMIT seconds (default 600).
set -uo pipefail

here=$(cd "$(dirname "$0")/.." && pwd)
exe=${1:-$here/build/tessaline}
limit=${LIMIT:-600}
digits_list=${DIGITS:-"1000 10000 100000"}

if ! command -v bc >/dev/null; then
  echo "bc is missing; installing it" >&2
  apt-get install -y bc >/dev/null || { echo "could not install bc" >&2; exit 1; }
fi
[ -x "$exe" ] || { echo "no interpreter at $exe (build it first)" >&2; exit 1; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Runs a command with the time limit; prints the seconds, "limit" or "error".
timed() {
  local start end rc
  start=$(date +%s.%N)
  timeout "$limit" "$@" >"$work/out" 2>&1
  rc=$?
  end=$(date +%s.%N)
  if [ $rc -eq 124 ]; then echo ">${limit}"; return; fi
  if [ $rc -ne 0 ] || grep -q "ERROR" "$work/out"; then echo "error"; return; fi
  echo "$end - $start" | bc -l | xargs printf "%.3f"
}

tessaline_run() {  # what digits
  local what=$1 n=$2 op
  case $what in
    pi) op="longpi" ;;
    e) op="longe" ;;
    sqrt2) op="sqr, 2" ;;
    ln2) op="log, 2" ;;
  esac
  cat >"$work/bench.bas" <<BAS
float $n
dim r\$($(( n / 255 + 2 )))
long r\$, $op
BAS
  (cd "$work" && timed "$exe" /c bench.bas </dev/null)
}

bc_run() {
  local what=$1 n=$2 expr
  case $what in
    pi) expr="4*a(1)" ;;
    e) expr="e(1)" ;;
    sqrt2) expr="sqrt(2)" ;;
    ln2) expr="l(2)" ;;
  esac
  echo "scale=$n; $expr" >"$work/bench.bc"
  timed bc -l "$work/bench.bc"
}

python_run() {
  local what=$1 n=$2
  cat >"$work/bench.py" <<PY
from decimal import Decimal, getcontext
getcontext().prec = $n + 10
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
value = {"pi": pi, "e": lambda: Decimal(1).exp(), "sqrt2": lambda: Decimal(2).sqrt(),
         "ln2": lambda: Decimal(2).ln()}["$what"]()
print(str(value)[:20])
PY
  timed python3 "$work/bench.py"
}

printf "%-8s %8s %12s %12s %12s\n" "value" "digits" "tessaline" "bc -l" "python"
for n in $digits_list; do
  for what in pi e sqrt2 ln2; do
    printf "%-8s %8s %12s %12s %12s\n" "$what" "$n" "$(tessaline_run $what $n)" "$(bc_run $what $n)" \
      "$(python_run $what $n)"
  done
done
