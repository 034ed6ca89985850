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

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
work="$home/work"
mkdir -p "$work" "$home/config/Ostraval Software"
cp "$src/$name.bas" "$work/"
for f in "$src"/data.*; do [ -e "$f" ] && cp "$f" "$work/"; done
cat > "$home/config/Ostraval Software/Tessaline.conf" <<CONF
[Settings]
WorkPath=$work
CONF

input=/dev/null
[ -f "$src/$name.in" ] && input="$src/$name.in"

actual="$home/actual.out"
(cd "$work" && HOME="$home" XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" \
   XDG_STATE_HOME="$home/state" QT_QPA_PLATFORM=offscreen \
   "$exe" /c "$name.bas" <"$input" >"$actual" 2>&1)
echo "exit status $?" >>"$actual"

listing="$home/actual.files"
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
