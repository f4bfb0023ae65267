#!/usr/bin/env bash
# Makes a self-signed certificate for trying veluria-server out:
#   scripts/server-cert.sh FOLDER [HOST]
# writes FOLDER/server.crt and FOLDER/server.key (0600), valid for HOST
# (default localhost) and 127.0.0.1 for 825 days. Clients must be told to
# trust this certificate explicitly; use a real one for a team.
set -euo pipefail
folder="${1:?usage: $0 FOLDER [HOST]}"
host="${2:-localhost}"
umask 077
mkdir -p "$folder"
openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 825 \
  -keyout "$folder/server.key" -out "$folder/server.crt" -subj "/CN=$host" \
  -addext "subjectAltName=DNS:$host,DNS:localhost,IP:127.0.0.1" 2>/dev/null
echo "$folder/server.crt"
