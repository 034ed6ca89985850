#!/usr/bin/env bash
# Runs one file transcript: tests/files/NAME.bas is copied with the files
# beside it (NAME.* and data.*) into a folder of its own, which becomes the
# working folder, so that the files a program writes never meet those of a
# run in parallel. Compares the console output with NAME.out, then, when
# NAME.files exists, the listing of the files the program left (each as
# "== name" and its bytes through od -c) with NAME.files.
# TESSALINE_REGENERATE=1 writes the expected files instead.
#
# usage: run_file_transcript.sh TESSALINE SOURCE_DIR NAME
set -uo pipefail
exe=$1
src=$(cd "$2" && pwd)
name=$3

. "$(dirname "$0")/lib.sh"
export QT_QPA_PLATFORM=offscreen
work="$scratch/work"
mkdir -p "$work"
cp "$src/$name.bas" "$work/"
for f in "$src"/data.*; do [ -e "$f" ] && cp "$f" "$work/"; done
write_settings "WorkPath=$work"

actual="$scratch/actual.out"
run_in "$work" "$(input_of "$src/$name")" "$actual" "$exe" /c "$name.bas"

listing="$scratch/actual.files"
(cd "$work" && for f in $(ls | sort); do
   case $f in "$name.bas"|data.*) continue ;; esac
   echo "== $f"; od -An -c "$f"
 done) >"$listing"

if [ "${TESSALINE_REGENERATE:-0}" = 1 ]; then
  cp "$actual" "$src/$name.out"
  [ -s "$listing" ] && cp "$listing" "$src/$name.files"
  echo "regenerated $src/$name.out"
  exit 0
fi
status=0
diff -u "$src/$name.out" "$actual" || { echo "transcript $name differs (expected - actual +)"; status=1; }
if [ -f "$src/$name.files" ]; then
  diff -u "$src/$name.files" "$listing" || { echo "files left by $name differ"; status=1; }
fi
exit $status
