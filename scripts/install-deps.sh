#!/usr/bin/env bash
# Installs every Debian 12 package that building, running and testing the
# client needs. Safe to run again: apt-get skips what is already there.
set -euo pipefail

packages=(
  build-essential cmake ninja-build ccache pkg-config git clang-format
  qt6-base-dev qt6-svg-dev qt6-tools-dev qt6-l10n-tools qt6-translations-l10n libqt6svg6 qt6-wayland
  qtkeychain-qt6-dev libsodium-dev libsqlite3-dev sqlite3 libssl-dev libxcb1-dev libarchive-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  dbus dbus-x11 python3-dbusmock gnome-keyring libsecret-tools
  desktop-file-utils xdg-utils appstream
  libqt6sql6-psql libpq-dev postgresql openssl bc curl
  chromium libqt6websockets6-dev
)
if [ "${1:-}" = "--packaging" ]; then
  # Checking the .deb that cpack makes.
  packages+=(lintian dpkg-dev)
fi
if [ "${1:-}" = "--desktop" ]; then
  # A virtual desktop with a tray and a notification daemon, for trying the
  # client on a machine without a display of its own.
  packages+=(xvfb trayer dunst xdotool imagemagick weston)
fi

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ "${#missing[@]}" -gt 0 ]; then
  sudo_cmd=()
  [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
  "${sudo_cmd[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
