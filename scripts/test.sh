#!/usr/bin/env bash
# Sets up, builds and runs all tests. With --sanitize: the same tests under the address and undefined-behaviour
# sanitizers. Further arguments go to ctest.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/lib/common.sh

preset=ci
if [ "${1:-}" = --sanitize ]; then
    preset=asan
    shift
fi

scripts/setup.sh
configure_and_build "$preset"

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:check_initialization_order=1:strict_init_order=1}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$PWD/tests/support/lsan.supp:print_suppressions=0}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1}

say "testing ($preset)"
scripts/lib/with_screen.sh ctest --test-dir "build/$preset" --output-on-failure -j "$(nproc)" "$@"
