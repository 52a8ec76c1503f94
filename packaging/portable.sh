#!/bin/sh
# Starts Tarnvale from the folder that it lies in, which holds all that it keeps.
set -e
folder=$(dirname "$(readlink -f "$0")")
mkdir -p "$folder/Data"
chmod 700 "$folder/Data" 2>/dev/null || true
export XDG_STATE_HOME="$folder/Data/State"
"$folder/U3-Data.exe"
exec "$folder/tarnvale" "$@"
