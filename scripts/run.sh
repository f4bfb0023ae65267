#!/usr/bin/env bash
# Installs what is needed, builds the client and starts it.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
cmake -S . -B build-app -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELURIA_TESTS=OFF >/dev/null
cmake --build build-app
# A local account to sign in with, made on the first run.
build-app/sdk/veluria-admin demo
exec build-app/src/veluria "$@"
