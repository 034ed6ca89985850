#!/usr/bin/env bash
# Runs one program transcript: `tessaline /c NAME.bas </dev/null` in a fresh
# home whose settings make tests/programs the working folder, and compares the
# console output with NAME.out. With TESSALINE_REGENERATE=1 the .out file is
# written instead (review the diff before committing it). With the mode
# --batch the program runs in batch mode (`tessaline --batch NAME.bas`, the
# window program without a display) instead of Console mode.
#
# usage: run_transcript.sh TESSALINE PROGRAM_DIR NAME [--batch]
set -uo pipefail
exe=$1
dir=$2
name=$3
mode=${4:-/c}

. "$(dirname "$0")/lib.sh"
private_runtime
export QT_QPA_PLATFORM=offscreen
write_settings "WorkPath=$dir"

actual="$scratch/actual.out"
run_in "$dir" "$(input_of "$dir/$name")" "$actual" "$exe" "$mode" "$name.bas"

if [ "${TESSALINE_REGENERATE:-0}" = 1 ]; then
  cp "$actual" "$dir/$name.out"
  echo "regenerated $dir/$name.out"
  exit 0
fi
if ! diff -u "$dir/$name.out" "$actual"; then
  echo "transcript $name differs (expected - actual +)"
  exit 1
fi
