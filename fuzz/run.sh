#!/usr/bin/env bash
# Runs one fuzz target for a given time at the lowest priority.
#
# usage: fuzz/run.sh TARGET SECONDS [libFuzzer options...]
#   TARGET: command_line | program | long_number | graph
#
# Installs clang and its runtime when missing (scripts/install-deps fuzz),
# builds the targets with clang++ in build-fuzz (TESSALINE_FUZZ_BUILD overrides
# the folder), seeds the corpus there on first use from the test programs,
# the examples and fuzz/seeds, and keeps the corpus between runs. Findings go
# to build-fuzz/artifacts/TARGET. Exit status 1 when the target found anything.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
target=${1:?usage: fuzz/run.sh TARGET SECONDS}
seconds=${2:?usage: fuzz/run.sh TARGET SECONDS}
shift 2
case $target in
  command_line|program|long_number|graph) ;;
  *) echo "unknown target '$target' (command_line, program, long_number, graph)" >&2; exit 2 ;;
esac
build=${TESSALINE_FUZZ_BUILD:-$root/build-fuzz}
"$root"/scripts/install-deps fuzz
binary=$build/${target}_fuzzer

nice -n 10 cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS="-O1 -gline-tables-only" \
  -DCMAKE_CXX_COMPILER=clang++ -DTESSALINE_FUZZ=ON -DTESSALINE_TESTS=OFF -DTESSALINE_WERROR=ON >/dev/null
nice -n 10 ninja -C "$build" -j2 "${target}_fuzzer" >/dev/null

corpus=$build/corpus/$target
artifacts=$build/artifacts/$target
work=$build/work/$target
mkdir -p "$corpus" "$artifacts" "$work"

# Seeds: a file per test program or example (its standard input behind the
# marker line), a file per distinct program line for the prompt, and the number texts.
if [ -z "$(ls -A "$corpus")" ]; then
  case $target in
    program)
      for bas in "$root"/tests/programs/*.bas "$root"/examples/*.bas; do
        seed=$corpus/$(basename "$bas" .bas)
        cp "$bas" "$seed"
        if [ -f "${bas%.bas}.in" ]; then printf '\n#INPUT#\n' >>"$seed"; cat "${bas%.bas}.in" >>"$seed"; fi
      done ;;
    command_line)
      cat "$root"/tests/programs/*.bas "$root"/examples/*.bas | tr -d '\r' | sed 's/^[0-9][0-9]* *//' |
        grep -v '^[[:space:]]*$' | sort -u | head -n 3000 | {
          n=0
          while IFS= read -r line; do n=$((n + 1)); printf '%s\n' "$line" >"$corpus/line$n"; done
        } ;;
    long_number)
      cp "$root"/fuzz/seeds/numbers/* "$corpus"/ ;;
    graph)
      # The graph programs of the examples and tests, the graph lines of each
      # graph unit test and of the graphs page, each followed by window
      # operations that use every kind once (see graph_fuzzer.cpp).
      operations='\x0a\x00\x80\x80\x08\x00\x40\x40\xf8\x01\x60\x60\x00\x02\x90\x90\x03\xa0\xa0\x00'
      operations+='\x04\x30\x30\x05\xc0\xc0\x06\xc0\xc0\x07\x00\x07\x02\x07\x03\x07\x05\x07\x07\x08\x40\x30'
      operations+='\x0a\x09\x00\x80\x80\x08\x09\x0b\x80\x01\x0b\xff\x02\x0b\x00\x03\x0b\xc0\x04\x0c\x0d\x05'
      seed() { { cat; printf '\n#WINDOW#\n%b' "$operations"; } >"$(mktemp "$corpus/graph.XXXXXX")"; }
      for bas in "$root"/examples/graphs/*.bas "$root"/tests/batch/*.bas "$root"/tests/programs/*.bas; do
        if grep -qiE '^[[:space:]]*[0-9]*[[:space:]]*(graph|plot|text)[[:space:]]' "$bas"; then seed <"$bas"; fi
      done
      # One program per test: its quoted lines that start with graph, plot or text.
      for test in "$root"/tests/unit/*graph*_test.cpp "$root"/tests/unit/plot_text_test.cpp \
                  "$root"/tests/graph_render/*_test.cpp; do
        perl -ne 'if (/^TEST(_F)?\(/) { print "$body\0" if $body; $body = "" }
                  while (/"((?:graph|plot|text)\b(?:[^"\\]|\\.)*)"/gi) { ($l = $1) =~ s/\\"/"/g; $body .= "$l\n" }
                  END { print "$body\0" if $body }' "$test" |
          while IFS= read -r -d '' body; do printf '%s' "$body" | seed; done
      done
      grep -E '^    [A-Z]' "$root"/docs/graphs.md | grep -v 'GRAPH parameters' | sed 's/^    //' | seed
      cp "$root"/fuzz/seeds/graph/* "$corpus"/ 2>/dev/null || true ;;
  esac
fi

# A dictionary of the keywords and function names for the interpreter targets.
options=()
if [ "$target" != long_number ]; then
  dict=$build/basic.dict
  grep -o '^ *"[a-z$][a-z0-9$_.]*",' "$root"/src/lang/keyword_tables.cpp | sed 's/^ *\("[^"]*"\),/\1/' |
    sort -u >"$dict"
  printf '"\\x0d\\x0a"\n"#INPUT#"\n"#WINDOW#"\n":"\n"("\n")"\n"\\x22"\n' >>"$dict"
  # The graph's own extremes: numbers at and beyond its limits.
  if [ "$target" = graph ]; then
    printf '"%s"\n' 1e308 -1e308 1.7976931348623157e308 4.9e-324 1e-306 1e307 1e300 1e-300 1.2e15 1.5e17 \
      100000010 9e15 0.0001 -0 >>"$dict"
  fi
  options+=("-dict=$dict")
fi
case $target in
  graph) options+=(-max_len=8192) ;;
  command_line) options+=(-max_len=600) ;;
  program) options+=(-max_len=16384) ;;
  long_number) options+=(-max_len=8192) ;;
esac

# In its own folder: CHDIR, CHAIN and the program file stay there.
# A DIM may ask for up to 2^31 elements (16 GB of doubles): its zeroed block
# is taken lazily, so only memory really used counts (the RSS limit); a
# single allocation is not refused for its size alone.
cd "$work"
status=0
TMPDIR=$work ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 LSAN_OPTIONS=suppressions=$root/tests/lsan_desktop.supp \
  UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  nice -n 19 "$binary" -jobs=1 -workers=1 -max_total_time="$seconds" -timeout=20 -rss_limit_mb=3072 -malloc_limit_mb=17000 \
  -artifact_prefix="$artifacts/" -print_final_stats=1 "${options[@]}" "$@" "$corpus" </dev/null \
  >"$work/run.log" 2>&1 || status=$?
log=$work/fuzz-0.log
[ -f "$log" ] || log=$work/run.log
grep -E '^#[0-9]+' "$log" | tail -n 1 || true
grep -E 'stat::number_of_executed_units|stat::peak_rss_mb' "$log" || true
rm -rf "$work"/tessaline-fuzz-*
if [ "$status" -ne 0 ] || grep -qE 'ERROR: (libFuzzer|AddressSanitizer|UndefinedBehaviorSanitizer)|runtime error:' "$log"; then
  echo "$target: FINDINGS (see $log and $artifacts)" >&2
  grep -E 'ERROR:|runtime error:|long-number fault' -A12 "$log" | head -n 60 >&2 || true
  exit 1
fi
echo "$target: no findings in ${seconds}s"
