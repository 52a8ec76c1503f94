#!/usr/bin/env bash
# tvcheck against its peers: medians, the two of a pair taking turns.
#
#   bench/check_bench.sh TVCHECK FOLDER_BENCH [FOLDER] [ROUNDS]
#
# TVCHECK and FOLDER_BENCH are the built programs; FOLDER (default: a temporary one)
# needs 3 GB. Of 20,000 small files and 20 large ones, a check by sizes and times against
# `rsync -an`, one by bytes against `diff -rq`; of the large ones by bytes against `cmp`
# over all pairs: for the small ones that would measure how fast processes start. Prints
# one line each: what, seconds of ours, seconds of the peer, their ratio, the goal. Ends
# with 1 when a goal isn't met.
set -euo pipefail
export LC_ALL=C

tvcheck=$(realpath "$1")
folder_bench=$(realpath "$2")
work=${3:-}
rounds=${4:-5}
if [[ -z $work ]]; then
  work=$(mktemp -d "${TMPDIR:-/var/tmp}/tarnvale-bench-XXXXXX")
  trap 'rm -rf "$work"' EXIT
fi
mkdir -p "$work/store"
tree=$work/tree
copy=$work/store/tree
missed=0

[[ -d $tree ]] || "$folder_bench" make "$tree"
[[ -d $copy ]] || cp -a "$tree" "$copy"
dos() { local path=${1//\//\\}; echo "C:$path"; }
settings() {  # storage location, items
  printf '[Destiny]\nDir=%s\n[Entries]\n' "$(dos "$1")"
  local number=0 item
  for item in "${@:2}"; do
    printf '%d=%s\n' "$number" "$(dos "$item")"
    number=$((number + 1))
  done
}
settings "$work/store" "$tree/*+++++*" >"$work/all.ini"
settings "$copy" "$tree"/large*.dat >"$work/large.ini"

by_sizes() { "$tvcheck" --settings "$work/all.ini"; }
by_bytes() { "$tvcheck" --settings "$work/all.ini" --contents; }
large_by_bytes() { "$tvcheck" --settings "$work/large.ini" --contents; }
rsync_sizes() { rsync -an "$tree/" "$copy"; }
diff_bytes() { diff -rq "$tree" "$copy"; }
cmp_large() {
  local file
  for file in "$tree"/large*.dat; do cmp "$file" "$copy/${file##*/}"; done
}

seconds() {  # runs a command, prints what it took
  local start=$EPOCHREALTIME
  "$@" >/dev/null
  echo "$start $EPOCHREALTIME" | awk '{ printf "%.4f\n", $2 - $1 }'
}

median() { sort -n "$1" | awk '{ all[NR] = $1 } END { print all[int((NR + 1) / 2)] }'; }

compare() {  # name, ours, peer, goal, rounds
  local round ours peer
  rm -f "$work/ours" "$work/peer"
  "$2" >/dev/null
  for ((round = 1; round <= $5; ++round)); do
    if ((round % 2)); then
      seconds "$2" >>"$work/ours"
      seconds "$3" >>"$work/peer"
    else
      seconds "$3" >>"$work/peer"
      seconds "$2" >>"$work/ours"
    fi
  done
  ours=$(median "$work/ours")
  peer=$(median "$work/peer")
  echo "$1 $ours $peer $4" | awk '{ printf "%-24s %8.4f s  peer %8.4f s  ratio %.2f  goal %.2f\n",
                                         $1, $2, $3, $2 / $3, $4 }'
  if ! echo "$ours $peer $4" | awk '{ exit !($1 / $2 <= $3) }'; then missed=1; fi
}

compare sizes/rsync-an by_sizes rsync_sizes 1.2 "$((3 * rounds))"
compare bytes/diff-rq by_bytes diff_bytes 1.2 "$((3 * rounds))"
compare large-bytes/cmp large_by_bytes cmp_large 1.2 "$((3 * rounds))"
exit $missed
