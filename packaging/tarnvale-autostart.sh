#!/bin/sh
# Starts Tarnvale with the session from now on, or not any more.
set -e
entry=$(dirname "$(readlink -f "$0")")/../share/tarnvale/autostart/tarnvale.desktop
folder=${XDG_CONFIG_HOME:-$HOME/.config}/autostart
case "$#:${1:-}" in
  1:on)
    mkdir -p "$folder"
    ln -sfn "$(readlink -f "$entry")" "$folder/tarnvale.desktop"
    ;;
  1:off)
    rm -f "$folder/tarnvale.desktop"
    ;;
  *)
    echo "usage: tarnvale-autostart on|off" >&2
    exit 2
    ;;
esac
