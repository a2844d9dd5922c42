#!/usr/bin/env bash
# usage: scripts/arm64.sh [--package]
# The module for 64-bit ARM, on another processor: sets up the cross compiler and that processor's libraries, builds, runs
# under an emulator the tests that need no screen, and compares the sound of every preset with this machine's module.
# With --package also the archive and Debian's packages in out/, with this machine's manual, whose pictures are the same.
# Half an hour on two cores.
# For Debian. On an ARM machine, scripts/test.sh and scripts/package.sh do all this without an emulator.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/lib/common.sh

with_package=no
case "${1:-}" in
    "") ;;
    --package) with_package=yes ;;
    *) fail "usage: scripts/arm64.sh [--package]" ;;
esac
[ "$(uname -m)" != aarch64 ] || fail "this is such a machine: run scripts/test.sh, or scripts/package.sh"

scripts/setup.sh --arm64
configure_and_build arm64

say "testing (arm64)"
scripts/lib/with_screen.sh ctest --preset arm64 -j "$(nproc)"

# The module without the manual, which is the same file in both archives.
module=build/arm64/source/Orvo_artefacts/Release/VST3/Orvo.vst3
native=build/release/source/Orvo_artefacts/Release/VST3/Orvo.vst3
configure_and_build release --target Orvo_VST3 orvo_host

say "comparing with the module for $(uname -m)"
ORVO_HOST=$PWD/build/release/bin/orvo-host scripts/compare_modules.sh "$native" "$module"

if [ $with_package = yes ]; then
    scripts/setup.sh --release
    configure_and_build release --target manual
    version=$(sed -n 's/^project(Orvo VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
    juce=$(dirname "$(sed -n 's/^JUCE_MODULES_DIR:[A-Z]*=//p' build/arm64/CMakeCache.txt)")
    lv2=build/arm64/source/Orvo_artefacts/Release/LV2/Orvo.lv2
    packaging/make_archive.sh "$version" "$module" "$lv2" "out/Orvo Manual $version.pdf" "$juce" out
    packaging/make_packages.sh "$version" arm64 build/arm64 "$juce" out .deps/arm64
fi
