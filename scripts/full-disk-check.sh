#!/usr/bin/env bash
# Runs veluria-admin against a database on a disk that fills up, and with an
# upload killed halfway, and checks that nothing reported as stored is lost,
# that nothing is left behind after the next start, and that the service
# works again once space is freed.
#
# The disk is a 48 MiB tmpfs in a private mount namespace (unshare -rm), so
# no root is needed and nothing outside is touched. The sqlite3 shell counts
# what was stored.
#
# Usage: scripts/full-disk-check.sh [BUILD_FOLDER]   (default: build)
set -euo pipefail
build=$(realpath "${1:-build}")
admin="$build/sdk/veluria-admin"
if [[ "${VELURIA_FULL_DISK_NAMESPACE:-}" != 1 ]]; then
  exec env VELURIA_FULL_DISK_NAMESPACE=1 unshare -rm bash "$0" "$build"
fi

disk=$(mktemp -d)
work=$(mktemp -d)
trap 'umount "$disk" 2>/dev/null; rm -rf "$disk" "$work"' EXIT
mount -t tmpfs -o size=48m tmpfs "$disk"
db="$disk/db"
mkdir -m 700 "$db"
export HOME="$work"
run() { "$admin" --database "$db" "$@" >"$work/out" 2>"$work/err"; }
fail() { echo "FAILED: $*" >&2; cat "$work/err" >&2; exit 1; }
leftovers() { find "$db/Store/tmp" -name '*.part' 2>/dev/null | wc -l; }
comments() { sqlite3 "$db/Veluria.sqlite" 'SELECT count(*) FROM publications WHERE revision_id IS NULL'; }

run add-user ann@example.com pw || fail "add-user"
run add-workspace Posters ann@example.com || fail "add-workspace"
head -c 64M /dev/urandom >"$work/huge.bin"
head -c 40M /dev/urandom >"$work/big.bin"

# A publish that doesn't fit fails, and leaves no partial file.
if run publish Posters ann@example.com "$work/huge.bin"; then fail "a publish larger than the disk succeeded"; fi
grep -q 'No space left on device' "$work/err" || fail "the failure doesn't name the full disk"
[[ $(leftovers) == 0 ]] || fail "a failed publish left $(leftovers) partial file(s)"
echo "ok: a publish larger than the disk fails and leaves nothing"

# Killed halfway, a publish leaves its partial; the next start removes it.
for attempt in 1 2 3 4 5; do
  "$admin" --database "$db" publish Posters ann@example.com "$work/big.bin" >/dev/null 2>&1 &
  pid=$!
  while [[ $(leftovers) == 0 ]] && kill -0 "$pid" 2>/dev/null; do :; done
  kill -9 "$pid" 2>/dev/null || true
  wait "$pid" 2>/dev/null || true
  [[ $(leftovers) != 0 ]] && break
done
[[ $(leftovers) != 0 ]] || fail "no publish could be killed halfway"
# The rest of the disk fills up, as it would with more killed publishes.
head -c 64M /dev/zero >"$disk/filler" 2>/dev/null || true
run workspaces ann@example.com || fail "the next start on a full disk failed"
[[ $(leftovers) == 0 ]] || fail "the next start left $(leftovers) partial file(s)"
echo "ok: a killed publish leaves nothing after the next start"

# On a full disk a comment is stored or refused, never lost: what was
# answered with success is all there once space is freed.
rm -f "$disk/filler"
before=$(comments)
head -c 64M /dev/zero >"$disk/filler" 2>/dev/null || true
stored=0
for text in one two three four five six seven eight; do
  if run comment Posters ann@example.com "$text"; then stored=$((stored + 1)); fi
done
rm -f "$disk/filler"
[[ $(comments) == $((before + stored)) ]] || fail "$stored comments were answered as stored, $(($(comments) - before)) are"
[[ $stored -lt 8 ]] || echo "note: the full disk refused no comment (SQLite found room in its log)"
run comment Posters ann@example.com 'after' || fail "a comment after space was freed failed"
[[ $(comments) == $((before + stored + 1)) ]] || fail "the comment after space was freed is missing"
echo "ok: on a full disk comments are stored or refused ($stored of 8 stored), and the service heals when space is freed"
