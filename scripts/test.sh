#!/bin/sh
# Installs what is missing, builds everything and runs every test: the rules, the art and
# sounds, the headless scenarios, the windows (offscreen) and the real program under Xvfb;
# then the rules again under the sanitizers.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh --test
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUILLOP_WERROR=ON
cmake --build build -j"$(nproc)"
(cd build && ctest --output-on-failure -j1)
scripts/sanitize.sh
