#!/bin/sh
# Installs the Debian 12 packages that building and playing Quillop need; with --test, also
# what its tests need. It only ever adds packages: nothing is removed or replaced, and when a
# package cannot be added without removing another, it says which and stops.
#
# usage: scripts/setup.sh [--test] [--dry-run]
#   --dry-run  only shows what apt-get would do (no update, no sudo, nothing changed)
# QUILLOP_SOUND_SERVER=pipewire|pulseaudio picks the tests' sound server (default: the one
# installed). QUILLOP_DPKG_ADMINDIR names another dpkg database to plan against (default
# /var/lib/dpkg); the tests use it with a copied one.
set -eu

# A package is added by naming it in one of the two lists below.
# Building and playing: the compiler, Qt, the PulseAudio client library (the game talks
# to whichever sound server the desktop runs; it needs none of its own) and the font that
# stands in for the classic face.
PLAY_PACKAGES="cmake g++ make pkgconf qt6-base-dev qt6-svg-dev libqt6svg6 qt6-image-formats-plugins
 libgl-dev libpulse-dev fonts-urw-base35"
# The tests: GoogleTest, an X server with a window manager and the tools that drive and
# photograph it, the sound server's command-line tools, Python; the validators of the desktop
# entry, the metainfo and the Debian package.
TEST_PACKAGES="libgtest-dev xvfb xdotool openbox imagemagick x11-utils x11-xserver-utils pulseaudio-utils python3
 lintian desktop-file-utils appstream dpkg-dev"
# The sound test runs its own private sound server: PipeWire's PulseAudio service where the
# desktop has PipeWire (it conflicts with the pulseaudio package), PulseAudio elsewhere.
PIPEWIRE_SERVER="pipewire pipewire-pulse wireplumber dbus-daemon"
PULSEAUDIO_SERVER="pulseaudio"

WITH_TESTS=""
DRY_RUN=""
for arg in "$@"; do
    case $arg in
        --test) WITH_TESTS=1 ;;
        --dry-run) DRY_RUN=1 ;;
        *) echo "usage: $0 [--test] [--dry-run]" >&2; exit 2 ;;
    esac
done
ADMINDIR=${QUILLOP_DPKG_ADMINDIR:-/var/lib/dpkg}

installed() {
    dpkg-query --admindir="$ADMINDIR" -W -f='${Status}' "$1" 2>/dev/null | grep -q "install ok installed"
}

# The private sound server for the tests: the one of the family already installed, unless
# QUILLOP_SOUND_SERVER (pipewire or pulseaudio) names one.
test_sound_server() {
    case ${QUILLOP_SOUND_SERVER:-} in
        pipewire) echo "$PIPEWIRE_SERVER"; return ;;
        pulseaudio) echo "$PULSEAUDIO_SERVER"; return ;;
    esac
    if installed pipewire-pulse || installed pipewire-audio; then
        echo "$PIPEWIRE_SERVER"
    else
        echo "$PULSEAUDIO_SERVER"
    fi
}

wanted=$PLAY_PACKAGES
[ -z "$WITH_TESTS" ] || wanted="$wanted $TEST_PACKAGES $(test_sound_server)"
missing=""
for p in $wanted; do
    installed "$p" || missing="$missing $p"
done
if [ -z "$missing" ]; then
    echo "setup: every package needed is installed"
    exit 0
fi

SUDO=""
[ -n "$DRY_RUN" ] || [ "$(id -u)" -eq 0 ] || SUDO="sudo"
APT="apt-get -o Dir::State::status=$ADMINDIR/status"
[ -n "$DRY_RUN" ] || $SUDO apt-get update

# Asks apt first what adding the packages would take, and refuses to go on if that would
# remove anything (apt-get's --no-remove would only fail with a terse message).
plan=$($APT -s install --no-install-recommends $missing 2>&1) || {
    echo "$plan" >&2
    echo "setup: apt-get cannot plan the installation of:$missing" >&2
    exit 1
}
removed=$(echo "$plan" | sed -n 's/^Remv \([^ ]*\).*/\1/p' | tr '\n' ' ')
if [ -n "$removed" ]; then
    echo "setup: adding$missing would remove $removed(they conflict)." >&2
    echo "setup: Quillop's set-up never removes packages, so it stops here; install what is" >&2
    echo "setup: missing by hand if you accept losing those." >&2
    exit 1
fi
if [ -n "$DRY_RUN" ]; then
    echo "$plan" | grep -E '^(Inst|Remv) ' || true
    echo "setup: would install:$missing"
    exit 0
fi
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y --no-remove --no-install-recommends $missing
