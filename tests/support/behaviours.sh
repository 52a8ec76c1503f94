# shellcheck shell=bash
# Sourced by the tests of commands: each behaviour is a function, and runs in a folder
# of its own below $area.

area=$(mktemp -d)
trap 'rm -rf "$area"' EXIT
export XDG_STATE_HOME=$area/state
export LC_ALL=C

fail() { echo "    $*"; exit 1; }

# Runs a command; leaves its code in $code, its outputs in the files out and err.
run() {
  code=0
  "$@" >out 2>err </dev/null || code=$?
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
# "# --- all of them": names each that fails, goes on, and ends the script.
run_behaviours() {
  local behaviours failed=0 result behaviour
  behaviours=$(sed -n '/^# --- the behaviours/,/^# --- all of them/s/^\([a-z0-9_]*\)() {$/\1/p' "$1")
  for behaviour in $behaviours; do
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
