#!/usr/bin/env bash
# veluria-admin --server against a veluria-server on loopback: the time of
# one command (sign-in, command, sign-out; median of 11) and a publish of a
# file of the given size against cp of it. Needs a Release build:
#   cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DVELURIA_TESTS=OFF
#   ninja -C build-bench veluria-server veluria-admin
#   bench/server-admin.sh build-bench [MiB]
set -euo pipefail
build="$(realpath "${1:?usage: $0 BUILD_DIR [MiB]}")"
mib="${2:-256}"
source "$(dirname "$0")/server-cluster.sh" veluria-admin-bench
# A free port: other servers may run on this machine.
port=$(python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
server_ini "$work/server.ini" "$port"
printf 'root@example.org\nroot password\n' | "$build/server/veluria-server" --config "$work/server.ini" --init >/dev/null
"$build/server/veluria-server" --config "$work/server.ini" 2>"$work/server.log" & pids+=($!)
for _ in $(seq 100); do grep -q listening "$work/server.log" && break; sleep 0.1; done
grep -q listening "$work/server.log" || { cat "$work/server.log" >&2; exit 1; }
admin() { echo 'root password' | "$build/sdk/veluria-admin" --server "https://localhost:$port" \
  --trust "$work/tls/server.crt" --admin root@example.org "$@"; }
admin add-workspace Bench root@example.org >/dev/null
seconds() { local s e; s=$(date +%s.%N); "$@" >/dev/null; e=$(date +%s.%N); echo "$e - $s" | bc -l; }
for _ in $(seq 11); do seconds admin workspaces root@example.org; done | sort -n > "$work/times"
head -c "$((mib * 1024 * 1024))" /dev/urandom > "$work/file"
sync
t_cp=$(seconds sh -c "cp '$work/file' '$work/copy' && sync '$work/copy'")
t_pub=$(seconds admin publish Bench root@example.org "$work/file")
printf 'command   median %.3f s  (min %.3f, max %.3f)\ncp        %.2f s  %.0f MiB/s\npublish   %.2f s  %.0f MiB/s  (%.2f of cp)\n' \
  "$(sed -n 6p "$work/times")" "$(head -1 "$work/times")" "$(tail -1 "$work/times")" \
  "$t_cp" "$(echo "$mib / $t_cp" | bc -l)" "$t_pub" "$(echo "$mib / $t_pub" | bc -l)" "$(echo "$t_cp / $t_pub" | bc -l)"
