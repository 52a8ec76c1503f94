#!/usr/bin/env bash
# What the program costs while it stands idle, minimised, all timers running:
# CPU time over a minute as a share of one core.
#   bench/idle_bench.sh [SECONDS] [PROGRAM]
set -euo pipefail
self=$(readlink -f "$0")
cd "$(dirname "$self")/.."
if [[ ${1:-} != --inside ]]; then exec tests/hosts/qt/with-display "$self" --inside "$@"; fi
shift

seconds=${1:-60}
program=${2:-build/release/bin/tarnvale}
folder=$(mktemp -d)
pid=
cleanup() {
  [[ -z $pid ]] || kill "$pid" 2>/dev/null || true
  wait 2>/dev/null || true
  rm -rf "$folder"
}
trap cleanup EXIT

mkdir "$folder/Data"
cp "$program" "$folder/tarnvale"
data="$folder/Data"
printf '"C:%s"\r\n' "${data//\//\\}" >"$folder/Data.txt"
printf '[Setup]\r\nWizard=1\r\n' >"$data/Tarnvale.ini"

"$folder/tarnvale" &
pid=$!
# The start is not idle.
sleep 5

jiffies() { awk '{print $14 + $15}' "/proc/$pid/stat"; }
switches() { awk '/ctxt/ {sum += $2} END {print sum}' "/proc/$pid/status"; }
before=$(jiffies)
woken=$(switches)
sleep "$seconds"
awk -v used=$(($(jiffies) - before)) -v hz="$(getconf CLK_TCK)" -v s="$seconds" \
  -v w=$(($(switches) - woken)) 'BEGIN {
  printf "idle, minimised, %d s: %.2f s of CPU, %.2f%% of one core, %.1f wakes a second\n",
         s, used / hz, 100 * used / hz / s, w / s }'
