#!/usr/bin/env bash
# Builds the benchmarks in release mode and runs them (all, or those named).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DVELURIA_BENCH=ON >/dev/null
cmake --build build-bench
export QT_QPA_PLATFORM=offscreen
for program in build-bench/bench/*_benchmark; do
  name=$(basename "$program")
  if [ "$#" -eq 0 ] || printf '%s\n' "$@" | grep -qx "$name"; then
    dbus-run-session --config-file=tests/support/session-bus.conf -- "$program"
  fi
done
