#!/usr/bin/env bash
# Upload and download of one file through veluria-server over TLS on
# loopback with curl, against cp of the same file to the same filesystem.
# Every figure includes making the bytes durable: cp is followed by sync of
# the copy, an upload ends with the server's fsync before it answers, a
# download with sync of curl's file. Rounds alternate cp, upload and
# download, and medians are reported (the machine may be shared). Needs a
# Release build:
#   cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release && ninja -C build-bench veluria-server
#   bench/server-throughput.sh build-bench [MiB] [rounds]
set -euo pipefail
build="${1:?usage: $0 BUILD_DIR [MiB]}"
mib="${2:-1024}"
rounds="${3:-3}"
server="$(realpath "$build")/server/veluria-server"
source "$(dirname "$0")/server-cluster.sh" veluria-bench
server_ini "$work/server.ini" 18443
echo 'bench password' | "$server" --config "$work/server.ini" --add-user bench@example.org
"$server" --config "$work/server.ini" 2>/dev/null & pids+=($!)
sleep 1
api=(curl -sS --cacert "$work/tls/server.crt")
url=https://localhost:18443/v1
token=$("${api[@]}" -X POST "$url/sessions" -d '{"email":"bench@example.org","password":"bench password"}' | sed 's/.*"token":"\([^"]*\)".*/\1/')
auth=(-H "Authorization: Bearer $token")
ws=$("${api[@]}" "${auth[@]}" -X POST "$url/workspaces" -d '{"name":"Bench"}' | sed 's/.*"id":"\([^"]*\)".*/\1/')

head -c "$((mib * 1024 * 1024))" /dev/urandom > "$work/file"
sha=$(sha256sum "$work/file" | cut -d' ' -f1)
size=$(stat -c %s "$work/file")
sync
seconds() { local s e; s=$(date +%s.%N); "$@" >/dev/null; e=$(date +%s.%N); echo "$e - $s" | bc -l; }
median() { printf '%s\n' "$@" | sort -g | awk '{v[NR] = $1} END {print v[int((NR + 1) / 2)]}'; }
cps=(); ups=(); downs=()
for ((round = 0; round < rounds; round++)); do
  cps+=("$(seconds sh -c "cp '$work/file' '$work/copy' && sync '$work/copy'")")
  rm -f "$work/copy"
  up=$("${api[@]}" "${auth[@]}" -X POST "$url/uploads" -d "{\"workspace\":\"$ws\",\"fileName\":\"f\",\"size\":$size,\"sha256\":\"$sha\"}" | sed 's/.*"id":"\([^"]*\)".*/\1/')
  ups+=("$(seconds "${api[@]}" "${auth[@]}" -X PATCH -H 'Upload-Offset: 0' -H 'Content-Type: application/octet-stream' -T "$work/file" -o "$work/up.json" "$url/uploads/$up")")
  rev=$(sed 's/.*"revision":"\([^"]*\)".*/\1/' "$work/up.json")
  downs+=("$(seconds sh -c "$(printf '%q ' "${api[@]}" "${auth[@]}") -o '$work/down' '$url/revisions/$rev/content' && sync '$work/down'")")
  [ "$(sha256sum "$work/down" | cut -d' ' -f1)" = "$sha" ] || { echo "download differs" >&2; exit 1; }
  rm -f "$work/down"
done
t_cp=$(median "${cps[@]}"); t_up=$(median "${ups[@]}"); t_down=$(median "${downs[@]}")
echo "rounds: cp ${cps[*]}; upload ${ups[*]}; download ${downs[*]}"
printf 'size %d MiB, medians of %d rounds\ncp        %.2f s  %.0f MiB/s\nupload    %.2f s  %.0f MiB/s  (%.2f of cp)\ndownload  %.2f s  %.0f MiB/s  (%.2f of cp)\n' \
  "$mib" "$rounds" "$t_cp" "$(echo "$mib / $t_cp" | bc -l)" "$t_up" "$(echo "$mib / $t_up" | bc -l)" "$(echo "$t_cp / $t_up" | bc -l)" \
  "$t_down" "$(echo "$mib / $t_down" | bc -l)" "$(echo "$t_cp / $t_down" | bc -l)"
