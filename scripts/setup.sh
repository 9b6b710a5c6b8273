#!/bin/sh
# Installs the Debian 12 packages the build, the game and its tests need.
# Safe to run again: apt-get skips what is already there.
set -eu
PACKAGES="cmake g++ make qt6-base-dev qt6-multimedia-dev qt6-svg-dev libqt6svg6 \
 qt6-image-formats-plugins libgl-dev libgtest-dev \
 xvfb xdotool openbox imagemagick x11-utils pulseaudio pulseaudio-utils python3"
missing=""
for p in $PACKAGES; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing="$missing $p"
done
if [ -n "$missing" ]; then
    SUDO=""
    [ "$(id -u)" -eq 0 ] || SUDO="sudo"
    $SUDO apt-get update
    DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y --no-install-recommends $missing
fi
