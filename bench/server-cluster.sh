# Sourced by the server benchmarks: a private PostgreSQL cluster in a new
# folder $work (its socket there, no TCP), a self-signed certificate in
# $work/tls, and the server processes the benchmark starts (add their ids
# to pids), all removed when the script ends.
bin="$(ls -d /usr/lib/postgresql/*/bin | tail -1)"
work="$(mktemp -d "/tmp/${1:-veluria-bench}.XXXXXX")"
as_pg=()
# PostgreSQL refuses to run as root.
if [ "$(id -u)" -eq 0 ]; then chown postgres "$work"; as_pg=(runuser -u postgres --); fi
pids=()
cleanup() {
  for p in "${pids[@]}"; do kill "$p" 2>/dev/null || true; done
  "${as_pg[@]}" "$bin/pg_ctl" -D "$work/data" -m immediate stop >/dev/null 2>&1 || true
  rm -rf "$work"
}
trap cleanup EXIT
"${as_pg[@]}" "$bin/initdb" -D "$work/data" -U veluria --auth=trust >/dev/null
"${as_pg[@]}" "$bin/pg_ctl" -D "$work/data" -w -l "$work/pg.log" -o "-k $work -c listen_addresses=''" start >/dev/null
"$(dirname "${BASH_SOURCE[0]}")/../scripts/server-cert.sh" "$work/tls" >/dev/null

# server_ini FILE PORT: a configuration for one server process on that port.
server_ini() {
  cat > "$1" <<INI
[server]
port=$2
certificate=$work/tls/server.crt
key=$work/tls/server.key
store=$work/store
[database]
host=$work
name=postgres
user=veluria
INI
}
