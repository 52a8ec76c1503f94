#!/usr/bin/env bash
# The long form of the reliability checks: 500 kills each, and a full medium.
#
#   tests/reliability/run.sh PROGRAM [KILLS] [SEED]
#
# PROGRAM is the built tarnvale_reliability. Prints figures; ends with 1 when
# anything was found.
set -u

program=$1
kills=${2:-500}
seed=${3:-}
failed=0

for check in copy settings; do
  # shellcheck disable=SC2086
  "$program" "$check" "$kills" $seed || failed=1
done
"$program" full || failed=1
exit $failed
