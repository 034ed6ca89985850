#!/bin/sh
# End-to-end run of the program in Console mode with a scratch home and settings folder.
# Usage: console_mode_test.sh PATH-TO-TESSALINE
set -u
bin=$1
. "$(dirname "$0")/lib.sh"

# A plain start with no input: the loop ends at once and the settings are written.
out=$("$bin" /c </dev/null 2>&1); rc=$?
[ "$rc" -eq 0 ] || fail "exit code $rc: $out"
case $out in *"Press <enter> to terminate program."*) ;; *) fail "no closing prompt: $out" ;; esac
[ -f "$conf" ] || fail "settings not written to $conf"
[ -d "$HOME/Documents/Tessaline" ] || fail "working folder not created"

# The next start reads the settings from the snapshot: Qt is not loaded.
[ -f "$HOME/.cache/tessaline/settings.snapshot" ] || fail "no settings snapshot"
out=$(LD_DEBUG=libs "$bin" /c </dev/null 2>&1) || fail "second start failed: $out"
case $out in *libQt6Core*) fail "Qt was loaded although the settings were known" ;; esac
case $out in *"Press <enter> to terminate program."*) ;; *) fail "second start: $out" ;; esac

# With the log enabled, the session lands in the log file.
mkdir "$scratch/logs"
printf '[Settings]\nCreateLogFile=1\nLogFilePath=%s\nLogFileName=session.log\n' "$scratch/logs" >"$conf"
out=$(printf 'print 1\n\n\n' | "$bin" /C 2>&1); rc=$?
[ "$rc" -eq 0 ] || fail "exit code $rc with log: $out"
case $out in *"Log File Opened"*) ;; *) fail "no log message: $out" ;; esac
log=$(cat "$scratch/logs/session.log") || fail "no log file"
case $log in "Tessaline BASIC Log File
Date & Time = "*"Press <enter> to terminate program.") ;; *) fail "log text: $log" ;; esac
grep -q '^LogFileName=session.log$' "$conf" || fail "settings lost at exit: $(cat "$conf")"

# Whatever bytes a typed command holds, the next start still reads the file
# it was saved in (here DEL, a stray UTF-8 byte and ESC).
out=$(printf 'print "a\177b\377c\033d"\n\n\n' | "$bin" /c 2>&1) || fail "odd bytes: $out"
case $out in *"could not be saved"*) fail "odd bytes not saved: $out" ;; esac
rm -rf "$HOME/.cache/tessaline"  # read the file itself, not the snapshot
out=$(printf '\n\n' | "$bin" /c 2>&1) || fail "start after odd bytes: $out"
case $out in *"Log File Opened"*) ;; *) fail "settings lost after odd bytes: $out" ;; esac
case $out in *"could not be saved"*) fail "settings not saved after odd bytes: $out" ;; esac
grep -q '^RecentCommand0=@ByteArray(print \\"a\\x7f\\x62\\xff\\x63\\x1b\\x64\\")$' "$conf" ||
  fail "typed bytes not kept: $(cat "$conf")"

# A command line that is too long is refused with exit code -1.
long=$(printf '%0600d' 0)
out=$("$bin" /c "$long" </dev/null 2>&1); rc=$?
[ "$rc" -eq 255 ] || fail "too long: exit code $rc"
case $out in *"Invalid Parameters (too long)"*) ;; *) fail "too long: $out" ;; esac

# Both programs answer a refused line, --help and --version alike, without
# starting a session.
for program in "$bin" "$(dirname "$bin")/tessaline-window"; do
  out=$("$program" 1 2 3 4 5 6 7 8 9 10 11 </dev/null 2>&1); rc=$?
  [ "$rc" -eq 255 ] && [ "$out" = "Error: Invalid Parameters (too many)" ] || fail "$program refused: $rc $out"
  out=$("$program" --version 2>&1) || fail "$program --version failed"
  case $out in "Tessaline "[0-9]*.[0-9]*) ;; *) fail "$program --version: $out" ;; esac
  out=$("$program" foo.bas --help 2>&1) || fail "$program --help failed"
  case $out in "Usage: tessaline "*"--batch FILE.bas"*) ;; *) fail "$program --help: $out" ;; esac
done
echo "ok"
