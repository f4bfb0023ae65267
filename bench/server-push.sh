#!/usr/bin/env bash
# Push through veluria-server over TLS on loopback:
#   a publication's time from one client to another through two server
#   processes sharing one database (median and 99th percentile), and
#   clients holding event streams on one process at rest (its memory and
#   processor time over a quiet spell).
# Needs a Release build with the benchmarks:
#   cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DVELURIA_TESTS=OFF -DVELURIA_BENCH=ON
#   ninja -C build-bench veluria-server server_push_benchmark
#   bench/server-push.sh build-bench [publications=1000] [clients=200] [seconds=60]
set -euo pipefail
build="$(realpath "${1:?usage: $0 BUILD_DIR [publications] [clients] [seconds]}")"
count="${2:-1000}"
clients="${3:-200}"
seconds="${4:-60}"
server="$build/server/veluria-server"
probe="$build/bench/server_push_benchmark"
source "$(dirname "$0")/server-cluster.sh" veluria-push
for port in 18551 18552; do server_ini "$work/server-$port.ini" "$port"; done
echo 'ann password' | "$server" --config "$work/server-18551.ini" --add-user ann@example.org
echo 'ben password' | "$server" --config "$work/server-18551.ini" --add-user ben@example.org
for port in 18551 18552; do
  "$server" --config "$work/server-$port.ini" 2>/dev/null & pids+=($!)
done
sleep 1
api=(curl -sS --cacert "$work/tls/server.crt")
token() {
  "${api[@]}" -X POST "https://localhost:$1/v1/sessions" -d "{\"email\":\"$2\",\"password\":\"$3\"}" |
    sed 's/.*"token":"\([^"]*\)".*/\1/'
}
ann=$(token 18551 ann@example.org 'ann password')
ben=$(token 18552 ben@example.org 'ben password')
ws=$("${api[@]}" -H "Authorization: Bearer $ann" -X POST https://localhost:18551/v1/workspaces -d '{"name":"Push"}' |
  sed 's/.*"id":"\([^"]*\)".*/\1/')
"${api[@]}" -H "Authorization: Bearer $ann" -X POST "https://localhost:18551/v1/workspaces/$ws/members" \
  -d '{"email":"ben@example.org"}' >/dev/null

echo "== a publication through process 1 to a client of process 2"
"$probe" latency https://localhost:18551 https://localhost:18552 "$work/tls/server.crt" "$ann" "$ben" "$ws" "$count"

echo "== $clients clients on one process at rest for $seconds s"
one=${pids[1]}
ticks() { awk '{print $14 + $15}' "/proc/$one/stat"; }
rss() { awk '/VmRSS/ {print $2}' "/proc/$one/status"; }
before_rss=$(rss)
fifo="$work/idle"; mkfifo "$fifo"
"$probe" idle https://localhost:18552 "$work/tls/server.crt" "$ben" "$clients" "$seconds" > "$fifo" & pids+=($!)
exec 3< "$fifo"
read -r line <&3; echo "$line"
t0=$(ticks); r0=$(rss)
read -r line <&3; echo "$line"
t1=$(ticks); r1=$(rss)
hz=$(getconf CLK_TCK)
printf 'server RSS %d KiB before the clients, %d KiB with them (%.1f KiB a client), %d KiB at the end\n' \
  "$before_rss" "$r0" "$(echo "($r0 - $before_rss) / $clients" | bc -l)" "$r1"
printf 'server processor time at rest: %.2f s in %d s (%.3f%% of a core)\n' \
  "$(echo "($t1 - $t0) / $hz" | bc -l)" "$seconds" "$(echo "($t1 - $t0) / $hz / $seconds * 100" | bc -l)"
