#!/usr/bin/env bash
# Sets up, builds and runs all tests. With --sanitize: the same tests under the address and undefined-behaviour
# sanitizers; with --thread: under the thread sanitizer. Further arguments go to ctest.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/lib/common.sh

preset=ci
case "${1:-}" in
    --sanitize) preset=asan; shift ;;
    --thread) preset=tsan; shift ;;
esac

scripts/setup.sh
configure_and_build "$preset"

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:check_initialization_order=1:strict_init_order=1}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$PWD/tests/support/lsan.supp:print_suppressions=0}
# JUCE destroys the lock of its message loop while it is held, at which the search for deadlocks loses its way.
export TSAN_OPTIONS=${TSAN_OPTIONS:-suppressions=$PWD/tests/support/tsan.supp:halt_on_error=1:report_destroy_locked=0:detect_deadlocks=0}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1}

say "testing ($preset)"
scripts/lib/with_screen.sh ctest --test-dir "build/$preset" --output-on-failure -j "$(nproc)" "$@"
