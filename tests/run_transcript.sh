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

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
mkdir -p "$home/config/Ostraval Software"
mkdir -m 700 "$home/runtime"
cat > "$home/config/Ostraval Software/Tessaline.conf" <<CONF
[Settings]
WorkPath=$dir
CONF

input=/dev/null
[ -f "$dir/$name.in" ] && input="$dir/$name.in"

actual="$home/actual.out"
(cd "$dir" && HOME="$home" XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" \
   XDG_STATE_HOME="$home/state" XDG_RUNTIME_DIR="$home/runtime" QT_QPA_PLATFORM=offscreen \
   "$exe" "$mode" "$name.bas" <"$input" >"$actual" 2>&1)
status=$?
echo "exit status $status" >>"$actual"

if [ "${TESSALINE_REGENERATE:-0}" = 1 ]; then
  cp "$actual" "$dir/$name.out"
  echo "regenerated $dir/$name.out"
  exit 0
fi
if ! diff -u "$dir/$name.out" "$actual"; then
  echo "transcript $name differs (expected - actual +)"
  exit 1
fi
