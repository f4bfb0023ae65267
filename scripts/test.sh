#!/usr/bin/env bash
# Installs what is needed, builds with AddressSanitizer and
# UndefinedBehaviorSanitizer, and runs every test headless on a private
# D-Bus session bus.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
# Compiler cache hits across clones of the repository.
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Debug -DVELURIA_SANITIZE=ON >/dev/null
cmake --build build
export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=detect_leaks=0:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
exec dbus-run-session --config-file=tests/support/session-bus.conf -- \
  ctest --test-dir build --output-on-failure
