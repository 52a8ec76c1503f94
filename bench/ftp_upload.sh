#!/usr/bin/env bash
# An upload of 500 MiB against the curl command, to a real server on the loopback:
# the fastest of each, the two taking turns. Whatever else the machine does only
# adds to a time.
#
#   bench/ftp_upload.sh PROGRAM [ROUNDS]
#
# PROGRAM is the built ftp_upload. Works in memory, as no medium is to be measured;
# TMPDIR names another place, with 1.5 GB. Ends with 1 when a goal isn't met:
# throughput at least 0.8 of the peer's, processor time less than 1.5 of it, and no
# timer more than 100 ms late.
set -euo pipefail
export LC_ALL=C

program=$(realpath "$1")
rounds=${2:-5}
work=$(mktemp -d "${TMPDIR:-/dev/shm}/tarnvale-bench-XXXXXX")
trap 'kill "${server:-}" 2>/dev/null || true; rm -rf "$work"' EXIT
chmod 711 "$work"
password=bench

if [[ $(id -u) -eq 0 ]]; then
  user=nobody group=nogroup
else
  user=$(id -un) group=$(id -gn)
fi
install -d "$work/home"
chown "$user:$group" "$work/home"
printf '%s:%s:%s:%s::%s:/bin/sh\n' ann "$(openssl passwd -6 "$password")" \
  "$(id -u "$user")" "$(id -g "$user")" "$work/home" >"$work/users"
chmod 600 "$work/users"
port=$(python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
cat >"$work/configuration" <<CONFIGURATION
ServerType standalone
SocketBindTight on
DefaultAddress 127.0.0.1
Port $port
User $user
Group $group
PidFile $work/pid
ScoreboardFile none
SystemLog $work/log
TransferLog none
WtmpLog off
AuthUserFile $work/users
AuthOrder mod_auth_file.c
RequireValidShell off
UseReverseDNS off
DelayEngine off
AllowOverwrite on
CONFIGURATION
/usr/sbin/proftpd -n -q -c "$work/configuration" 2>"$work/output" &
server=$!
until curl -s "ftp://127.0.0.1:$port/" -u "ann:$password" >/dev/null; do
  kill -0 "$server" || { cat "$work/output" >&2; exit 1; }
done

head -c 500M /dev/urandom >"$work/file"

ours() {
  "$program" "127.0.0.1:$port" ann "$password" "$work/file" ours >>"$work/ours"
}

peer() {
  TIMEFORMAT='%R %U %S'
  { time curl -s -T "$work/file" -u "ann:$password" "ftp://127.0.0.1:$port/peer"; } 2>&1 |
    awk '{ print $1, $2 + $3 }' >>"$work/peer"
}

# The least of a column.
column() { awk -v column="$2" '{ print $column }' "$1" | sort -n | head -1; }

for ((round = 0; round <= rounds; ++round)); do
  if ((round % 2)); then ours; peer; else peer; ours; fi
  # The first round warms everything up.
  ((round > 0)) || rm -f "$work/ours" "$work/peer"
done
cmp "$work/home/ours" "$work/file"

worst=$(awk '{ print $3 }' "$work/ours" | sort -n | tail -1)
echo "$(column "$work/ours" 1) $(column "$work/peer" 1)" \
     "$(column "$work/ours" 2) $(column "$work/peer" 2) $worst" |
  awk '{ printf "upload-500MiB/curl     %7.0f MiB/s  peer %7.0f MiB/s  ratio %.2f  goal 0.80\n",
                500 / $1, 500 / $2, $2 / $1
         printf "processor-time/curl    %7.3f s      peer %7.3f s      ratio %.2f  goal 1.50\n",
                $3, $4, $3 / $4
         printf "latest-timer           %7.1f ms                                goal 100\n", $5
         exit !($2 / $1 >= 0.8 && $3 / $4 < 1.5 && $5 <= 100) }'
