#!/usr/bin/env bash
# Runs every program in examples/ and fails when one ends with an error.
# usage: run_examples.sh TESSALINE EXAMPLES_DIR
set -uo pipefail
exe=$1
dir=$2
. "$(dirname "$0")/lib.sh"
failed=0
for program in "$dir"/*.bas; do
  out=$(cd "$dir" && timeout 300 "$exe" /c "$program" </dev/null 2>&1)
  status=$?
  if [ $status -ne 0 ] || grep -q "ERROR - " <<<"$out"; then
    echo "example $(basename "$program") failed (exit $status):"
    echo "$out"
    failed=1
  fi
done
exit $failed
