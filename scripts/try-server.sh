#!/usr/bin/env bash
# A team server on this machine, for trying it out or developing against it:
# a private PostgreSQL cluster in FOLDER (its socket there, no TCP), a
# self-signed certificate, veluria-server on 127.0.0.1:PORT with its store in
# FOLDER, and a first administrator.
#
#   scripts/try-server.sh start BUILD FOLDER [PORT] [ADMIN-EMAIL]   (ADMIN password from standard input)
#   scripts/try-server.sh stop FOLDER
#
# A client then names https://127.0.0.1:PORT and FOLDER/tls/server.crt in
# its VeluriaService.ini (the README's "Pointing a client at a server").
# For a real installation follow server/README.md instead.
set -euo pipefail

as_owner() {
  # PostgreSQL refuses to run as root.
  if [ "$(id -u)" = 0 ]; then runuser -u postgres -- "$@"; else "$@"; fi
}

pg_bin=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -1)
[ -n "$pg_bin" ] || { echo "PostgreSQL is not installed (scripts/install-deps.sh installs it)." >&2; exit 1; }

case "${1:-}" in
stop)
  folder=$(realpath "$2")
  [ -f "$folder/server.pid" ] && kill "$(cat "$folder/server.pid")" 2>/dev/null || true
  as_owner "$pg_bin/pg_ctl" -D "$folder/data" -m fast stop >/dev/null 2>&1 || true
  echo "Stopped the server in $folder."
  ;;
start)
  build=$(realpath "$2")
  folder=$3
  port=${4:-18443}
  admin=${5:-admin@example.org}
  server="$build/server/veluria-server"
  [ -x "$server" ] || { echo "No $server: build it (ninja -C $build veluria-server)." >&2; exit 1; }
  mkdir -p "$folder"
  folder=$(realpath "$folder")
  chmod 0711 "$folder"
  if [ ! -d "$folder/data" ]; then
    mkdir -p "$folder/data" "$folder/run"
    [ "$(id -u)" = 0 ] && chown postgres "$folder/data" "$folder/run"
    as_owner "$pg_bin/initdb" -D "$folder/data" -U veluria --auth=trust >"$folder/initdb.log"
  fi
  as_owner "$pg_bin/pg_ctl" -D "$folder/data" -w -l "$folder/run/postgresql.log" \
    -o "-k $folder/run -c listen_addresses=''" start >/dev/null
  as_owner "$pg_bin/createdb" -h "$folder/run" -U veluria veluria 2>/dev/null || true
  [ -f "$folder/tls/server.crt" ] || "$(dirname "$0")/server-cert.sh" "$folder/tls" >/dev/null
  umask 077
  cat >"$folder/server.ini" <<INI
[server]
listen=127.0.0.1
port=$port
certificate=$folder/tls/server.crt
key=$folder/tls/server.key
store=$folder/store

[database]
host=$folder/run
name=veluria
user=veluria
INI
  if [ ! -f "$folder/administrator" ]; then
    read -r password
    printf '%s\n%s\n' "$admin" "$password" | "$server" --config "$folder/server.ini" --init
    echo "$admin" >"$folder/administrator"
  fi
  "$server" --config "$folder/server.ini" >"$folder/server.log" 2>&1 &
  echo $! >"$folder/server.pid"
  sleep 1
  kill -0 "$(cat "$folder/server.pid")" || { cat "$folder/server.log" >&2; exit 1; }
  echo "veluria-server runs on https://127.0.0.1:$port (log $folder/server.log)."
  echo "Administrator $admin; certificate $folder/tls/server.crt."
  ;;
*)
  sed -n '2,12p' "$0" | sed 's/^# \{0,1\}//' >&2
  exit 2
  ;;
esac
