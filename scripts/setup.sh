#!/usr/bin/env bash
# usage: scripts/setup.sh [--release]
# Installs every package that building, testing and demonstrating Orvo needs, with --release also what the manual
# and Debian's packages need, and places the JUCE source tree in .deps/juce. Idempotent: a second run only looks and
# takes about a second.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/lib/common.sh
source scripts/lib/packages.sh

packages=(
    # compilers and build tools
    g++ clang libclang-rt-dev llvm lld cmake ninja-build ccache pkg-config dpkg-dev git ca-certificates python3
    # what JUCE needs on Linux
    libasound2-dev libfreetype-dev libfontconfig1-dev libx11-dev libxext-dev libxinerama-dev libxrandr-dev
    libxcursor-dev libxcomposite-dev libxrender-dev zlib1g-dev libpng-dev libjpeg-dev
    # the spectrum's transform
    libfftw3-dev
    # for orvo-host: files of audio, their loudness, what the X server paints
    libsndfile1-dev libebur128-dev libxdamage-dev
    # tests and benchmarks
    googletest libgtest-dev libgmock-dev libbenchmark-dev clang-format clang-tidy
    # a screen for programs that open windows
    xvfb xauth openbox xdotool imagemagick x11-utils fontconfig
    # real recordings for the demonstration
    chuck-data deepin-sound-theme
)

case "${1:-}" in
    "") ;;
    # sets the manual, makes and checks Debian packages
    --release) packages+=(ruby-asciidoctor-pdf debhelper lintian) ;;
    *) fail "usage: scripts/setup.sh [--release]" ;;
esac

# The pinned JUCE: Debian's source package of the suite trixie, signature checked by apt, Debian's patches
# applied. A private sources file and list folder leave the system's own apt settings alone.
juce_version="8.0.6+ds-2"

fetch_juce()
{
    if [ -n "${ORVO_JUCE_DIR:-}" ] || [ -f "/usr/lib/cmake/JUCE-8.0.6/JUCEConfig.cmake" ]; then return; fi
    if [ "$(cat .deps/juce/.orvo-version 2>/dev/null)" = "$juce_version" ]; then return; fi

    say "fetching the JUCE $juce_version source package"
    local work="$PWD/.deps/apt" mirror options
    rm -rf "$work" && mkdir -p "$work/lists/partial" "$work/cache/archives/partial" "$work/source"

    # apt lists its index targets only after a first update.
    mirror=$(debian_mirror)
    if [ -z "$mirror" ]; then as_root apt-get update -qq || true; mirror=$(debian_mirror); fi
    [ -n "$mirror" ] || fail "apt knows no Debian mirror; set ORVO_JUCE_DIR to a JUCE 8.0.6 or 8.0.7 source tree"

    echo "deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $mirror trixie main" > "$work/sources.list"
    options=(-qq -o "Dir::Etc::SourceList=$work/sources.list" -o Dir::Etc::SourceParts=/dev/null
             -o "Dir::State::Lists=$work/lists" -o "Dir::Cache=$work/cache" -o APT::Sandbox::User=root)
    apt-get "${options[@]}" update || fail "no Debian mirror could be reached for the JUCE source"
    (cd "$work/source" && apt-get "${options[@]}" source "juce=$juce_version" > "$work/source.log" 2>&1) \
        || { cat "$work/source.log" >&2; fail "the JUCE source package could not be fetched"; }

    rm -rf .deps/juce
    mv "$work"/source/juce-*/ .deps/juce
    echo "$juce_version" > .deps/juce/.orvo-version
    rm -rf "$work"
}

debian_mirror()
{
    apt-get indextargets --format '$(SITE)' 'Created-By: Packages' 'Origin: Debian' 'Label: Debian' 2>/dev/null | head -n 1
}

install_packages "${packages[@]}"
fetch_juce
