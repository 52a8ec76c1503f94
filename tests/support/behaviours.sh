# shellcheck shell=bash
# Sourced by the tests of commands: each behaviour is a function, and runs in a folder
# of its own below $area.

# shellcheck disable=SC2034
system=$1
area=$(mktemp -d)
trap 'rm -rf "$area"' EXIT
export XDG_STATE_HOME=$area/state
export LC_ALL=C

fail() { echo "    $*"; exit 1; }

# What to call for a program's file: one for Windows is started under Wine.
program() {
  if [[ $system != windows ]]; then
    readlink -f "$1"
    return
  fi
  local starter=$area/${1##*/}
  printf '#!/bin/sh\nexec "%s" "%s" "$@"\n' "$under_wine" "$(readlink -f "$1")" >"$starter"
  chmod +x "$starter"
  echo "$starter"
}
under_wine=$(readlink -f "$(dirname "${BASH_SOURCE[0]}")/../../scripts/under-wine")

# Of a behaviour that can't be looked at everywhere: ends it, and says so.
linux_only() {
  [[ $system != windows ]] || { echo "    skipped: ${FUNCNAME[1]}: $*"; exit 0; }
}

# What stands between names, the drive of these folders, what the system says of a missing
# file. shellcheck disable=SC2034
slash=/
drive=C:
missing="No such file or directory"
if [[ $system == windows ]]; then
  slash='\'
  drive=Z:
  missing="File not found"
fi

# Runs a command; leaves its code in $code, its outputs in the files out and err.
run() {
  local tries=3
  while
    code=0
    "$@" >out 2>err </dev/null || code=$?
    # Now and then Wine's server drops a program before it has begun, and says so or not.
    # What has begun never fails without a word.
    [[ $system == windows && $((--tries)) -gt 0 ]] &&
      { grep -q '^wine client error' err || [[ $code != 0 && ! -s out && ! -s err ]]; }
  do :; done
  # Of a drive that is no medium of its own; about Wine, not the program.
  [[ $system != windows ]] || sed -i '/^wine: Read access denied/d' err
}

expect_code() { [[ $code == "$1" ]] || fail "exit code $code, not $1: $(cat err)"; }
expect_out() { [[ $(cat out) == "$1" ]] || fail "prints: $(cat out)"; }

# Nothing but these names (sorted, hidden ones too) stands in a folder.
expect_names() {
  local folder=$1 names
  shift
  names=$(cd "$folder" && find . -mindepth 1 -maxdepth 1 -printf '%f\n' | sort | tr '\n' ' ')
  [[ $names == "${*:+$* }" ]] || fail "$folder holds: $names"
}

# Runs all functions of a script between its lines "# --- the behaviours" and
# "# --- all of them": names each that fails, goes on, and ends the script. Only those that
# match the pattern in ONLY, if there is one.
run_behaviours() {
  local behaviours failed=0 result behaviour
  behaviours=$(sed -n '/^# --- the behaviours/,/^# --- all of them/s/^\([a-z0-9_]*\)() {$/\1/p' "$1")
  for behaviour in $behaviours; do
    [[ $behaviour =~ ${ONLY:-} ]] || continue
    mkdir "$area/$behaviour"
    # Not in a condition, where -e wouldn't count.
    set +e
    (set -e; cd "$area/$behaviour"; "$behaviour")
    result=$?
    set -e
    if [[ $result != 0 ]]; then
      echo "FAILED: $behaviour"
      failed=1
    fi
    rm -rf "${area:?}/$behaviour"
  done
  exit $failed
}
