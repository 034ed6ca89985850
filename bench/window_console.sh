#!/bin/sh
# 100,000 PRINT lines through the window's console view (offscreen) against the
# same program in Console mode writing to a file. The window should take at
# most twice as long. Build first with -DTESSALINE_BENCHMARKS=ON.
# usage: bench/window_console.sh [BUILD_DIR]
set -eu
build=${1:-build}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export HOME="$scratch" XDG_CONFIG_HOME="$scratch/config" XDG_CACHE_HOME="$scratch/cache" XDG_STATE_HOME="$scratch/state"
printf '10 for i = 1 to 100000\n20 print "Line number"; i; "of the console benchmark"\n30 next i\n' >"$scratch/lines.bas"

start=$(date +%s%N)
"$build/tessaline" /c "$scratch/lines.bas" </dev/null >"$scratch/console.txt"
console_ms=$(( ($(date +%s%N) - start) / 1000000 ))
window_ms=$("$build/bench/window_console_bench" "$scratch/lines.bas")
echo "Console mode to a file: ${console_ms} ms"
echo "window console view:    ${window_ms} ms"
awk -v w="$window_ms" -v c="$console_ms" 'BEGIN { r = c > 0 ? w / c : 0; printf "ratio: %.2f (at most 2 wanted)\n", r; exit (r <= 2 ? 0 : 1) }'
