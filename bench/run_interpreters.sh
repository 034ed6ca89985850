#!/usr/bin/env bash
# run_interpreters.sh — times the interpreter programs of bench/programs in
# Tessaline and in three other BASIC interpreters (bwbasic, yabasic, brandy),
# checks that every interpreter prints the same checksum line, and prints one
# table of median wall times (whole process, start-up included) with ratios.
#
#   bench/run_interpreters.sh            # 3 runs of each program in each interpreter
#   RUNS=5 bench/run_interpreters.sh
#   TESSALINE_BIN=/path/to/tessaline bench/run_interpreters.sh
#
# Run on demand only (never by CI): it installs the peers with apt-get when
# they are missing and takes a few minutes, most of it in bwbasic.
set -u

ROOT=$(cd "$(dirname "$0")/.." && pwd)
PROGRAMS=$ROOT/bench/programs
BIN=${TESSALINE_BIN:-$ROOT/build/tessaline}
RUNS=${RUNS:-3}
NAMES=(arith sieve strings gosub collatz startup)
PEERS=(bwbasic yabasic brandy)

if [ ! -x "$BIN" ]; then
    echo "no Tessaline binary at $BIN (build first, or set TESSALINE_BIN)" >&2
    exit 2
fi

missing=()
for p in "${PEERS[@]}"; do command -v "$p" >/dev/null 2>&1 || missing+=("$p"); done
if [ ${#missing[@]} -gt 0 ]; then
    echo "installing ${missing[*]} ..." >&2
    SUDO=
    [ "$(id -u)" -ne 0 ] && SUDO=sudo
    $SUDO apt-get update -qq >/dev/null && $SUDO apt-get install -y -qq "${missing[@]}" >/dev/null ||
        { echo "could not install ${missing[*]}" >&2; exit 2; }
fi

WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT
# brandy draws its screen itself; its programs spool their output to a file
# in the current folder instead, and the screen goes to a dummy video driver.
export SDL_VIDEODRIVER=dummy

# run_once INTERPRETER NAME: runs one program, leaves its output in
# $WORK/out.txt and its wall time in seconds in $WORK/time.txt.
run_once() {
    local interp=$1 name=$2 start end
    rm -f "$WORK/out.txt" "$WORK/brandy_out.txt"
    start=$(date +%s%N)
    case $interp in
        tessaline) (cd "$WORK" && "$BIN" /c "$PROGRAMS/$name.bas" </dev/null >"$WORK/out.txt" 2>&1) ;;
        bwbasic) (cd "$WORK" && bwbasic "$PROGRAMS/$name.bwb" </dev/null >"$WORK/out.txt" 2>&1) ;;
        yabasic) (cd "$WORK" && yabasic "$PROGRAMS/$name.yab" </dev/null >"$WORK/out.txt" 2>&1) ;;
        brandy) (cd "$WORK" && brandy -quit "$PROGRAMS/$name.bbc" </dev/null >/dev/null 2>&1) ;;
    esac
    end=$(date +%s%N)
    [ "$interp" = brandy ] && cp "$WORK/brandy_out.txt" "$WORK/out.txt" 2>/dev/null
    awk -v a="$start" -v b="$end" 'BEGIN { printf "%.4f\n", (b - a) / 1e9 }' >"$WORK/time.txt"
}

# The checksum line of the last run, blanks squeezed: the line that starts
# with the program's name.
checksum() {
    tr -d '\r' <"$WORK/out.txt" | tr -s ' \t' ' ' | sed 's/^ //; s/ $//' | grep -m1 "^$1\b" || echo "(no output)"
}

median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

declare -A MED SUM
status=0
for name in "${NAMES[@]}"; do
    for interp in tessaline "${PEERS[@]}"; do
        times=()
        for ((r = 0; r < RUNS; ++r)); do
            run_once "$interp" "$name"
            times+=("$(cat "$WORK/time.txt")")
        done
        MED[$name,$interp]=$(printf '%s\n' "${times[@]}" | median)
        SUM[$name,$interp]=$(checksum "$name")
        echo "  $name / $interp: ${times[*]}  -> ${SUM[$name,$interp]}" >&2
    done
    for interp in "${PEERS[@]}"; do
        if [ "${SUM[$name,$interp]}" != "${SUM[$name,tessaline]}" ]; then
            echo "CHECKSUM MISMATCH in $name: tessaline '${SUM[$name,tessaline]}', $interp '${SUM[$name,$interp]}'" >&2
            status=1
        fi
    done
done

echo
echo "Median wall time of $RUNS runs in seconds; the ratio is peer time / Tessaline time."
printf '%-9s %10s %10s %10s %10s %9s %9s %9s\n' program tessaline bwbasic yabasic brandy bwb/tes yab/tes bra/tes
for name in "${NAMES[@]}"; do
    t=${MED[$name,tessaline]}
    printf '%-9s %10.3f' "$name" "$t"
    for interp in "${PEERS[@]}"; do printf ' %10.3f' "${MED[$name,$interp]}"; done
    for interp in "${PEERS[@]}"; do
        awk -v p="${MED[$name,$interp]}" -v t="$t" 'BEGIN { printf " %9.2f", (t > 0 ? p / t : 0) }'
    done
    printf '\n'
done
exit $status
