#!/bin/sh
# Installs what building and playing need (never a sound server, never removing a package),
# builds Quillop and starts it.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j"$(nproc)" --target Quillop2
exec build/shell/Quillop2 "$@"
