# Common set-up of the shell tests, sourced with `. "$(dirname "$0")/lib.sh"`
# (POSIX sh, so bash scripts may source it too).
#
# It makes a scratch folder that is removed when the script ends, and points
# HOME and the XDG folders into it, so that a test never reads or changes the
# settings, log or working folder of whoever runs it. A process whose id is
# in $pid when the script ends is killed first.
#   $scratch        the scratch folder
#   $conf           the settings file (written by the program or by write_settings)
#   fail TEXT...    prints "FAIL: TEXT" and ends the test
#   write_settings KEY=VALUE...
#                   replaces the settings file with these values in group "Settings"
#   private_runtime gives the process a runtime folder of its own (the window
#                   program wants one, mode 700)
#   no_display      takes the display away, so that only batch mode can run
#   input_of BASE   names BASE.in when it exists, else /dev/null
#   run_in DIR INPUT OUT COMMAND...
#                   runs COMMAND in DIR reading INPUT; OUT receives its output
#                   and then a line "exit status N"

scratch=$(mktemp -d) || exit 1
pid=
cleanup() {
  [ -n "$pid" ] && kill -KILL "$pid" 2>/dev/null
  rm -rf "$scratch"
}
trap cleanup EXIT
export HOME="$scratch/home" XDG_CONFIG_HOME="$scratch/config" XDG_DATA_HOME="$scratch/data"
export XDG_STATE_HOME="$scratch/state"
mkdir -p "$HOME" "$XDG_CONFIG_HOME"
conf="$XDG_CONFIG_HOME/Ostraval Software/Tessaline.conf"

fail() { echo "FAIL: $*"; exit 1; }

write_settings() {
  mkdir -p "$(dirname "$conf")"
  printf '[Settings]\n' >"$conf"
  printf '%s\n' "$@" >>"$conf"
}

private_runtime() {
  export XDG_RUNTIME_DIR="$scratch/runtime"
  mkdir -p -m 700 "$XDG_RUNTIME_DIR"
}

no_display() {
  private_runtime
  unset DISPLAY WAYLAND_DISPLAY
}

input_of() {
  if [ -f "$1.in" ]; then echo "$1.in"; else echo /dev/null; fi
}

run_in() {
  _dir=$1 _input=$2 _out=$3
  shift 3
  (cd "$_dir" && "$@" <"$_input" >"$_out" 2>&1)
  echo "exit status $?" >>"$_out"
}
