#!/usr/bin/env bash
# usage: scripts/check_tidy.sh [FILE.cpp...]
# clang-tidy over these files, or over all that are ours, with the commands of the build with sanitizers, which is
# clang's own: `scripts/test.sh --sanitize` makes it.
set -euo pipefail
caller=$PWD
cd "$(dirname "$0")/.."
source scripts/lib/common.sh

[ -f build/asan/compile_commands.json ] || fail "no build/asan: run scripts/test.sh --sanitize first"

files=()
for file in "$@"; do
    file=$(cd "$caller" && realpath -e -- "$file")
    grep -qF "\"file\": \"$file\"" build/asan/compile_commands.json || fail "not compiled by itself: $file"
    files+=("^$file\$")
done
if [ ${#files[@]} -eq 0 ]; then files=("^$PWD/(source|tools|tests|benchmarks)/"); fi

run-clang-tidy -quiet -p build/asan -j "$(nproc)" "${files[@]}"
