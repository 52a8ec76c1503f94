#!/usr/bin/env bash
# What the program costs while it stands idle, minimised, all timers running:
# CPU time over a minute as a share of one core.
#   bench/idle_bench.sh [SECONDS] [PROGRAM]
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."

seconds=${1:-60}
program=${2:-build/release/bin/tarnvale}
folder=$(mktemp -d)
pids=()
cleanup() {
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  wait 2>/dev/null || true
  rm -rf "$folder"
}
trap cleanup EXIT

mkdir "$folder/Data"
cp "$program" "$folder/tarnvale"
data="$folder/Data"
printf '"C:%s"\r\n' "${data//\//\\}" >"$folder/Data.txt"
printf '[Setup]\r\nWizard=1\r\n' >"$data/Tarnvale.ini"

Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3>"$folder/display" 2>/dev/null &
pids+=($!)
for _ in $(seq 100); do [[ -s $folder/display ]] && break; sleep 0.1; done
DISPLAY=:$(tr -d '[:space:]' <"$folder/display")
export DISPLAY
openbox >/dev/null 2>&1 &
pids+=($!)
"$folder/tarnvale" &
pid=$!
pids+=("$pid")
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
