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

say "testing ($preset)"
scripts/lib/with_screen.sh ctest --preset "$preset" -j "$(nproc)" "$@"
