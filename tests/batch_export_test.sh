#!/bin/sh
# Graph files from a script: `tessaline --batch plot.bas` with no display and
# no person at the dialogs writes the JPEG named by "JpegPath" and "JpegFile"
# at the stored quality and resolution, the metafile "graph.emf" in the
# working folder, and exits 0. The JPEG's frame header is read back here.
bin=$1
. "$(dirname "$0")/lib.sh"
no_display
export QT_QPA_PLATFORM=offscreen
mkdir -p "$scratch/work" "$scratch/pictures"
write_settings "WorkPath=$scratch/work" "JpegPath=$scratch/pictures" JpegFile=plot.jpg JPEGQuality=90 JPEGResolution=700

cat >"$scratch/plot.bas" <<'BAS'
10 graph width = 4, height = 3
20 plot color = (200, 0, 0), lineweight = 2
30 for i = 0 to 20
40 plot x = i, y = sin(i / 3)
50 next i
60 graph metafile
70 graph jpeg
BAS
out=$("$bin" --batch "$scratch/plot.bas" </dev/null 2>"$scratch/err"); rc=$?
[ $rc -eq 0 ] || fail "plot.bas exited $rc: $out $(cat "$scratch/err")"
# Message boxes are lines on standard error.
grep -q "Tessaline Graph: JPEG file was successfully created." "$scratch/err" || fail "no JPEG message: $(cat "$scratch/err")"
grep -q "Tessaline Graph: MetaFile was successfully created." "$scratch/err" || fail "no metafile message: $(cat "$scratch/err")"
[ -s "$scratch/pictures/plot.jpg" ] || fail "no JPEG at JpegPath/JpegFile: $(ls -R "$scratch")"
[ -s "$scratch/work/graph.emf" ] || fail "no graph.emf in the working folder: $(ls -R "$scratch")"
# 4 by 3 inches at the resolution 700 clamped to 600: 2400 by 1800 pixels, baseline.
size=$(python3 - "$scratch/pictures/plot.jpg" <<'PY'
import struct, sys
b = open(sys.argv[1], 'rb').read()
i = 2
while i < len(b):
    marker, length = b[i + 1], struct.unpack('>H', b[i + 2:i + 4])[0]
    if marker in (0xC0, 0xC1, 0xC2):
        h, w = struct.unpack('>HH', b[i + 5:i + 9])
        print('%x %dx%d' % (marker, w, h))
        break
    i += 2 + length
PY
)
[ "$size" = "c0 2400x1800" ] || fail "JPEG frame: $size"
# The clamped values are kept for the next session.
grep -q '^JPEGResolution=600' "$conf" ||
  fail "resolution not kept: $(cat "$conf")"
# With nothing stored, the JPEG is graph.jpg in the working folder.
printf '10 graph\n20 plot x = 1, y = 1\n30 graph jpeg\n' >"$scratch/first.bas"
write_settings "WorkPath=$scratch/work"
"$bin" --batch "$scratch/first.bas" </dev/null >/dev/null 2>&1 || fail "first.bas failed"
[ -s "$scratch/work/graph.jpg" ] || fail "no graph.jpg in the working folder: $(ls -R "$scratch")"
echo "batch exports: all passed"
