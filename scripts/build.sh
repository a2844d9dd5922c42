#!/usr/bin/env bash
# usage: scripts/build.sh [PROGRAM...]
# Builds the release configuration and leaves the results at stable places under out/: the modules, with the manual if
# scripts/package.sh has made it, orvo-host, and the programs that are named: orvo-bench, orvo-gallery, orvo-bank.
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

programs=(orvo-host)
for program in "$@"; do
    case $program in
        orvo-host) ;;
        orvo-bench | orvo-gallery | orvo-bank) programs+=("$program") ;;
        *) fail "usage: scripts/build.sh [orvo-bench] [orvo-gallery] [orvo-bank]" ;;
    esac
done

scripts/setup.sh
configure_and_build release --target Orvo_VST3 Orvo_LV2 "${programs[@]//-/_}"

place build/release/source/Orvo_artefacts/Release/VST3/Orvo.vst3 out/Orvo.vst3
place build/release/source/Orvo_artefacts/Release/LV2/Orvo.lv2 out/Orvo.lv2
manual=$(compgen -G "out/Orvo Manual *.pdf" | sort -V | tail -n 1 || true)
for resources in out/Orvo.vst3/Contents/Resources out/Orvo.lv2/Resources; do
    if [ -n "$manual" ]; then cp -- "$manual" "$resources"; fi
done
for program in "${programs[@]}"; do
    place "build/release/bin/$program" "out/bin/$program"
done

say "built: out/Orvo.vst3, out/Orvo.lv2, and in out/bin: ${programs[*]}"
