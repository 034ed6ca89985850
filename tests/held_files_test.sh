#!/bin/sh
# The files the interpreter holds: the log on a device, a FIFO and a disk
# that fills up, and what a program started by SPAWN inherits.
# Usage: held_files_test.sh PATH-TO-TESSALINE
set -u
bin=$1
. "$(dirname "$0")/lib.sh"
mkdir -p "$scratch/logs"
use_log() { write_settings CreateLogFile=1 "LogFilePath=$1" "LogFileName=$2" "WorkPath=$scratch"; }

# A device that takes the open but fails every write, and a FIFO nobody
# reads: refused at once, and the session runs without a log.
mkfifo "$scratch/logs/fifo"
for name in /dev/full "$scratch/logs/fifo"; do
  use_log "$(dirname "$name")" "$(basename "$name")"
  out=$(printf 'print 6 * 7\n\n\n' | timeout 10 "$bin" /c 2>&1); rc=$?
  [ "$rc" -eq 0 ] || fail "$name: exit code $rc: $out"
  case $out in *"Cant open LOG file."*"42"*) ;; *) fail "$name: $out" ;; esac
  case $out in *"Log File Opened"*) fail "$name: taken as a log: $out" ;; esac
done

# A FIFO named as a data file, a program or a rules file: no open waits for
# a program at its other end. Writing to one that nobody reads is refused
# with the reason; reading one that nobody writes finds its end.
mkfifo "$scratch/pipe"
write_settings "WorkPath=$scratch"
out=$(printf '%s\n' 'open "o", 1, "pipe"' 'open "i", 2, "pipe"' 'print eof(2)' 'close' \
  'open "b", 3, "pipe"' 'load "pipe"' 'setdstrules "pipe"' 'print 6 * 7' '' |
  (cd "$scratch" && timeout -s KILL 10 "$bin" /c 2>&1)); rc=$?
[ "$rc" -eq 0 ] || fail "fifo: exit code $rc: $out"
case $out in *'Cannot open "pipe": no program is reading from it.'*) ;; *) fail "fifo: output: $out" ;; esac
case $out in *"Command:             1"*"no \"standard\" line"*"42"*) ;; *) fail "fifo: $out" ;; esac
case $out in *'"pipe" is a pipe, without the positions of a BINARY file.'*) ;; *) fail "fifo: BINARY taken: $out" ;; esac

# A pipe whose writer sends nothing: the reading program still hears SIGTERM.
sleep 30 >"$scratch/pipe" &
writer=$!
printf 'open "i", 1, "pipe"\nline input #1, a$\n' >"$scratch/pipe.bas"
(cd "$scratch" && exec timeout -s KILL 20 "$bin" /c pipe.bas </dev/null >"$scratch/pipe.out" 2>&1) &
reader=$!
sleep 1
kill -TERM $reader  # timeout passes it on
wait $reader; rc=$?
kill $writer 2>/dev/null; wait $writer 2>/dev/null
[ "$rc" -eq 143 ] || fail "pipe without data: exit code $rc: $(cat "$scratch/pipe.out")"

# TZ naming a device without end or a pipe instead of a zone file: neither
# read for ever nor waited for: the session starts as with an unknown zone.
for zone in /dev/zero "$scratch/pipe"; do
  out=$(printf 'print formatdatetime$(1e9, "%%T %%Z")\n\n' | TZ=$zone timeout -s KILL 10 "$bin" /c 2>&1); rc=$?
  [ "$rc" -eq 0 ] || fail "TZ=$zone: exit code $rc: $out"
  case $out in *":40 "*) ;; *) fail "TZ=$zone: $out" ;; esac
done

# A log that stops taking writes half way (here a file size limit) is
# reported once; the program runs on.
use_log "$scratch/logs" limited.log
cat >"$scratch/many.bas" <<'BAS'
for i = 1 to 400
  print "line"; i
next
BAS
out=$(cd "$scratch" && trap '' XFSZ && ulimit -f 4 && "$bin" /c many.bas </dev/null 2>&1); rc=$?
[ "$rc" -eq 0 ] || fail "limited log: exit code $rc"
n=$(printf '%s\n' "$out" | grep -c 'The log file could not be written')
[ "$n" -eq 1 ] || fail "limited log: reported $n times: $out"
case $out in *"line          400"*) ;; *) fail "limited log: the program stopped: $out" ;; esac

# A program started by SPAWN gets standard input, output and error only:
# not the log, whatever else is open. Its arguments can be passed quoted.
use_log "$scratch/logs" spawn.log
cat >"$scratch/spawn.bas" <<'BAS'
spawn "ls -l /proc/self/fd > fds.txt"
odd$ = "it's $HOME; `id` \"q\""
spawn "printf '[%s]\n' > args.txt", odd$, "two words", ""
delay 1
BAS
out=$(cd "$scratch" && "$bin" /c spawn.bas </dev/null 2>&1) || fail "spawn: $out"
[ -s "$scratch/fds.txt" ] || fail "spawn: no listing: $out"
grep -q 'spawn.log' "$scratch/fds.txt" && fail "spawn: the log leaked: $(cat "$scratch/fds.txt")"
# 0, 1, 2 and the folder ls reads itself.
extra=$(awk '$(NF-2) ~ /^[0-9]+$/ && $(NF-2) > 3' "$scratch/fds.txt")
[ -z "$extra" ] || fail "spawn: descriptors passed on: $extra"
expected=$(printf '[%s]\n[two words]\n[]' "it's \$HOME; \`id\` \"q\"")
[ "$(cat "$scratch/args.txt")" = "$expected" ] || fail "spawn: arguments: $(cat "$scratch/args.txt")"
echo "ok"
