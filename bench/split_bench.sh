#!/usr/bin/env bash
# The splitter against `split` and `cat`: medians, the two of a pair taking turns.
#
#   bench/split_bench.sh PROGRAM [MIB] [ROUNDS]
#
# PROGRAM is the built split_bench; MIB (default 512) the size of the file. Starts
# a display of its own. Prints one line each: what, seconds of ours, seconds of the
# peer, their ratio, the goal, and the longest time in which the window didn't
# answer. Ends with 1 when a goal isn't met.
set -euo pipefail
export LC_ALL=C
self=$(readlink -f "$0")
if [[ ${1:-} != --inside ]]; then exec "${self%/*}/../tests/hosts/qt/with-display" "$self" --inside "$@"; fi
shift

program=$(realpath "$1")
mib=${2:-512}
rounds=${3:-5}
part_bytes=104857600
work=$(mktemp -d "${TMPDIR:-/var/tmp}/tarnvale-bench-XXXXXX")
chmod 700 "$work"
trap 'rm -rf "$work"' EXIT
missed=0

# Memory for what comes: see warm_memory.h.
warm() { "${program%/*}/warm_memory" $((2 * mib)); }

peer_seconds() {
  warm
  local start=$EPOCHREALTIME
  "$@"
  echo "$start $EPOCHREALTIME" | awk '{ printf "%.4f\n", $2 - $1 }' >>"$work/peer"
}

ours() {
  warm
  "$program" "$@" >>"$work/ours"
}

round_of() {  # split|join, round: who begins changes
  rm -rf "$work/a" "$work/b"
  mkdir "$work/a" "$work/b"
  if [[ $1 == join ]]; then
    split -b "$part_bytes" -d -a 3 --numeric-suffixes=1 "$work/file" "$work/a/file."
  fi
  sync -f "$work"
  if [[ $1 == split ]]; then
    local our_turn=(ours split "$work/file" "$work/a" "$part_bytes")
    local peer_turn=(peer_seconds split -b "$part_bytes" "$work/file" "$work/b/file.")
  else
    local our_turn=(ours join "$work/a/file.001")
    local peer_turn=(peer_seconds bash -c 'cat "$1"/a/file.??? >"$1"/b/file' - "$work")
  fi
  if (($2 % 2)); then "${our_turn[@]}"; "${peer_turn[@]}"; else "${peer_turn[@]}"; "${our_turn[@]}"; fi
  # What was made is right.
  if [[ $1 == split ]]; then cat "$work"/a/file.??? | cmp - "$work/file"; else cmp "$work/a/file" "$work/file"; fi
}

median() { sort -n | awk '{ all[NR] = $1 } END { print all[int((NR + 1) / 2)] }'; }

report() {  # what, goal
  local ours peer gap
  ours=$(median <"$work/ours")
  peer=$(median <"$work/peer")
  gap=$(awk '{ print $2 }' "$work/ours" | sort -n | tail -1)
  echo "$1 $ours $peer $2 $gap" | awk '{ printf "%-8s %8.4f s  peer %8.4f s  ratio %.2f  goal %.2f  longest wait %.1f ms\n",
                                              $1, $2, $3, $2 / $3, $4, $5 }'
  if ! echo "$ours $peer $2" | awk '{ exit !($1 / $2 <= $3) }'; then missed=1; fi
  rm -f "$work/ours" "$work/peer"
}

head -c "${mib}M" /dev/urandom >"$work/file"
for what in split join; do
  round_of "$what" 0
  rm -f "$work/ours" "$work/peer"  # the first round warms up
  for ((round = 1; round <= rounds; ++round)); do round_of "$what" "$round"; done
  if [[ $what == join ]]; then report join 1.00; else report split 1.50; fi
done
exit "$missed"
