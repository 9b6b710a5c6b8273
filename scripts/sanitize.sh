#!/bin/sh
# The rules under AddressSanitizer and UndefinedBehaviorSanitizer: the core tests, the
# headless scenarios and a random one-million-tick scenario must run without a report.
set -eu
cd "$(dirname "$0")/.."
cmake -S . -B build-san -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUILLOP_SANITIZE=ON
cmake --build build-san -j"$(nproc)" --target quillop_core_tests quillop-sim quillop-bench
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
build-san/tests/core/quillop_core_tests --gtest_brief=1
build-san/tools/bench/quillop-bench --random-scenario 20261123 > build-san/random.scn
build-san/tools/sim/quillop-sim build-san/random.scn > build-san/random.trace 2> build-san/random.err
if [ -s build-san/random.err ]; then cat build-san/random.err; exit 1; fi
echo "sanitized random scenario: $(awk '$1=="tick"{n+=$2} END{print n}' build-san/random.scn) timer events, $(wc -l < build-san/random.trace) ticks run, clean"
