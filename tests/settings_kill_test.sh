#!/bin/sh
# What an export chooses is in the settings file as soon as it is chosen: a
# session killed with SIGKILL right after keeps it. Batch mode takes what the
# JPEG dialog proposes (the working folder, "graph.jpg", the stored values
# clamped) and keeps that.
# Usage: settings_kill_test.sh PATH-TO-TESSALINE
set -u
bin=$1
. "$(dirname "$0")/lib.sh"
no_display
export QT_QPA_PLATFORM=offscreen
mkdir -p "$scratch/work"
write_settings "WorkPath=$scratch/work" JPEGQuality=10 JPEGResolution=700

cat >"$scratch/export.bas" <<'BAS'
10 graph width = 2, height = 2
20 plot x = 1, y = 1
30 graph jpeg
40 goto 40
BAS
"$bin" --batch "$scratch/export.bas" </dev/null >"$scratch/out" 2>&1 &
pid=$!
tries=0
until grep -q "JPEG file was successfully created" "$scratch/out" 2>/dev/null; do
  tries=$((tries + 1))
  [ "$tries" -le 300 ] || fail "no JPEG written: $(cat "$scratch/out")"
  sleep 0.1
done
kill -KILL "$pid"
wait "$pid" 2>/dev/null
pid=
[ -s "$scratch/work/graph.jpg" ] || fail "no graph.jpg: $(ls -R "$scratch/work")"
for kept in "JpegPath=$scratch/work" JpegFile=graph.jpg JPEGQuality=25 JPEGResolution=600; do
  grep -qx "$kept" "$conf" || fail "$kept not kept: $(cat "$conf")"
done
echo "ok"
