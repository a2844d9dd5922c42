#!/usr/bin/env bash
# Builds the release configuration and leaves the results at stable places under out/.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/lib/common.sh

# place FILE TARGET: replaces a file or bundle whole, so that a program that uses the old one keeps it.
place()
{
    mkdir -p "$(dirname "$2")"
    rm -rf "$2.new"
    cp -R "$1" "$2.new"
    rm -rf "$2"
    mv "$2.new" "$2"
}

scripts/setup.sh
configure_and_build release

place build/release/source/Orvo_artefacts/Release/VST3/Orvo.vst3 out/Orvo.vst3
for program in orvo-host orvo-bench orvo-gallery orvo-bank; do
    place "build/release/bin/$program" "out/bin/$program"
done

say "built: out/Orvo.vst3 and the programs in out/bin"
