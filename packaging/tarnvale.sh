#!/bin/sh
# Starts Tarnvale for this user. The program lies where only the system writes; what it
# keeps beside itself elsewhere, it keeps in a folder of the user's.
set -e
programs=$(dirname "$(readlink -f "$0")")/../libexec/tarnvale
own=$(cd "$programs" && pwd -P)
folder=${XDG_DATA_HOME:-$HOME/.local/share}/tarnvale
mkdir -p "$folder"
chmod 700 "$folder"
for companion in Quit.exe U3-Data.exe; do
  ln -sfn "$own/$companion" "$folder/$companion"
done
# The program starts this one too, but doesn't wait for it.
"$own/U3-Data.exe"
exec "$own/tarnvale" "$@"
