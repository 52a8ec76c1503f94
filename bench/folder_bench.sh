#!/usr/bin/env bash
# Folder sync against its peers: medians, the two of a pair taking turns.
#
#   bench/folder_bench.sh PROGRAM [FOLDER] [ROUNDS]
#
# PROGRAM is the built folder_bench; FOLDER (default: a temporary one) needs
# 14 GB for 5 rounds. Prints one line each: what, seconds of ours, seconds of the
# peer, their ratio, the goal. Ends with 1 when a goal isn't met.
set -euo pipefail
export LC_ALL=C

program=$(realpath "$1")
work=${2:-}
rounds=${3:-5}
if [[ -z $work ]]; then
  work=$(mktemp -d "${TMPDIR:-/var/tmp}/tarnvale-bench-XXXXXX")
  trap 'rm -rf "$work"' EXIT
fi
mkdir -p "$work"
tree=$work/tree
missed=0

seconds() {  # runs a command, prints what it took
  local start=$EPOCHREALTIME
  "$@" >/dev/null
  local end=$EPOCHREALTIME
  echo "$start $end" | awk '{ printf "%.4f\n", $2 - $1 }'
}

median() { sort -n "$1" | awk '{ all[NR] = $1 } END { print all[int((NR + 1) / 2)] }'; }

report() {  # what, goal
  local ours peer
  ours=$(median "$work/ours")
  peer=$(median "$work/peer")
  echo "$1 $ours $peer $2" | awk '{ printf "%-24s %8.4f s  peer %8.4f s  ratio %.2f  goal %.2f\n",
                                         $1, $2, $3, $2 / $3, $4 }'
  if ! echo "$ours $peer $2" | awk '{ exit !($1 / $2 <= $3) }'; then missed=1; fi
  rm -f "$work/ours" "$work/peer"
}

pair() {  # of one round: who begins changes
  local round=$1 ours=$2 peer=$3
  if ((round % 2)); then
    seconds $ours >>"$work/ours"
    seconds $peer >>"$work/peer"
  else
    seconds $peer >>"$work/peer"
    seconds $ours >>"$work/ours"
  fi
}

[[ -d $tree ]] || "$program" make "$tree"
cat "$tree"/*/* "$tree"/*.dat >/dev/null

for ((round = 0; round <= rounds; ++round)); do
  sync -f "$work"
  if ((round == 0)); then
    # Warms everything up, and makes what the other two compare with.
    "$program" sync "$tree" "$work/ours0"
    rsync -a "$tree/" "$work/peer0"
    cp -a "$tree" "$work/copy0"
  elif ((round % 2)); then
    seconds "$program" sync "$tree" "$work/ours$round" >>"$work/ours"
    sync -f "$work"
    seconds cp -a "$tree" "$work/copy$round" >>"$work/peer"
  else
    seconds cp -a "$tree" "$work/copy$round" >>"$work/peer"
    sync -f "$work"
    seconds "$program" sync "$tree" "$work/ours$round" >>"$work/ours"
  fi
done
report fresh-copy/cp-a 1.0

sync -f "$work"
ours="$program sync $tree $work/ours0"
peer="rsync -a $tree/ $work/peer0"
$ours; $peer
for ((round = 1; round <= 3 * rounds; ++round)); do pair "$round" "$ours" "$peer"; done
report no-change/rsync-a 0.75

for ((round = 0; round <= 2 * rounds; ++round)); do
  "$program" touch "$tree"
  sync -f "$work"
  if ((round == 0)); then
    $ours; $peer
  else
    pair "$round" "$ours" "$peer"
  fi
done
report 1%-touched/rsync-a 0.70

diff -r "$tree" "$work/ours0" >/dev/null || { echo "the copy differs from its source"; missed=1; }

"$program" touch "$tree"
$ours
printf 'flush after 1%%: %s s\n' "$("$program" flush "$work")"
exit $missed
