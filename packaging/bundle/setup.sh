#!/bin/sh
# Sets up this unpacked bundle for the user who runs it: the folder above it
# gets the link "current" to this version, and the desktop gets the entries
# that start it, handle veluria: links and publish from the file managers.
# Run it again after moving the bundle.
exec "$(dirname "$0")/bin/veluria-installer" --set-up
