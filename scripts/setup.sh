#!/usr/bin/env bash
# usage: scripts/setup.sh [--release] [--arm64]
# Installs every package that building, testing and demonstrating Orvo needs, with --release also what the manual
# and Debian's packages need, and with --arm64 what builds for 64-bit ARM and runs it; places the JUCE source tree in
# .deps/juce. Idempotent: a second run only looks and takes about a second.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/lib/common.sh
source scripts/lib/packages.sh

# Libraries that programs are linked to, here or for another processor.
libraries=(
    # what JUCE needs on Linux
    libasound2-dev libfreetype-dev libfontconfig1-dev libx11-dev libxext-dev libxinerama-dev libxrandr-dev
    libxcursor-dev libxcomposite-dev libxrender-dev zlib1g-dev libpng-dev libjpeg-dev
    # the spectrum's transform
    libfftw3-dev
    # for orvo-host: files of audio, their loudness, what the X server paints
    libsndfile1-dev libebur128-dev libxdamage-dev
    # tests and benchmarks
    libgtest-dev libgmock-dev libbenchmark-dev
)
packages=(
    "${libraries[@]}"
    # compilers and build tools
    g++ clang libclang-rt-dev llvm lld cmake ninja-build ccache pkg-config dpkg-dev git ca-certificates python3
    # tests
    googletest clang-format clang-tidy
    # a screen for programs that open windows
    xvfb xauth openbox xdotool imagemagick x11-utils fontconfig
    # real recordings for the demonstration
    chuck-data deepin-sound-theme
)

with_arm64=no
for option in "$@"; do
    case $option in
        # sets the manual, makes and checks Debian packages
        --release) packages+=(ruby-asciidoctor-pdf debhelper lintian) ;;
        # builds for 64-bit ARM, and runs it
        --arm64) packages+=(g++-aarch64-linux-gnu qemu-user)
                 with_arm64=yes ;;
        *) fail "usage: scripts/setup.sh [--release] [--arm64]" ;;
    esac
done

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

# Debian's libraries for 64-bit ARM, of the suites that this system has, in .deps/arm64: the cross compiler links to them,
# the emulator runs them, with Python that loads the module in a test, and DEBIAN tells of their symbols, as in the tree that
# a package is built from. To add the architecture to the system instead would bind every later upgrade of these packages to
# both.
fetch_arm64_libraries()
{
    local root=$PWD/.deps/arm64 wanted=(libc6-dev libgcc-s1 libstdc++6 libxss1 python3 "${libraries[@]}") work options package list link
    if [ "$(cat "$root/.orvo-packages" 2>/dev/null)" = "${wanted[*]}" ]; then return; fi

    say "fetching Debian's libraries for 64-bit ARM"
    work=$PWD/.deps/apt-arm64
    rm -rf "$work" && mkdir -p "$work/lists/partial" "$work/cache/archives/partial" "$work/root"
    : > "$work/status"
    debian_suites | sed 's|.*|deb [arch=arm64 signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] & main|' \
        > "$work/sources.list"
    [ -s "$work/sources.list" ] || fail "apt knows no Debian mirror"

    # Knows of no installed package, so everything that they depend on comes along.
    options=(-qq -o APT::Architecture=arm64 -o APT::Architectures=arm64 -o "Dir::State::Status=$work/status"
             -o "Dir::Etc::SourceList=$work/sources.list" -o Dir::Etc::SourceParts=/dev/null
             -o Dir::Etc::Preferences=/dev/null -o Dir::Etc::PreferencesParts=/dev/null
             -o "Dir::State::Lists=$work/lists" -o "Dir::Cache=$work/cache" -o APT::Sandbox::User=root)
    apt-get "${options[@]}" update || fail "no Debian mirror could be reached for the libraries of 64-bit ARM"
    apt-get "${options[@]}" install -y --download-only --no-install-recommends "${wanted[@]}" \
        || fail "the libraries of 64-bit ARM could not be fetched"
    mkdir "$work/root/DEBIAN"
    for package in "$work"/cache/archives/*.deb; do
        dpkg-deb -x "$package" "$work/root"
        for list in symbols shlibs; do
            dpkg-deb -I "$package" $list 2> /dev/null >> "$work/root/DEBIAN/$list" || true
        done
    done

    # Links from the root of a system, and what its base has from Debian 13 on.
    find "$work/root" -type l -lname '/*' -print0 | while IFS= read -r -d '' link; do
        ln -sfnr "$work/root$(readlink "$link")" "$link"
    done
    [ -e "$work/root/lib" ] || ln -s usr/lib "$work/root/lib"

    echo "${wanted[*]}" > "$work/root/.orvo-packages"
    rm -rf "$root"
    mv "$work/root" "$root"
    rm -rf "$work"
}

# A mirror and a suite on each line, updates and security included.
debian_suites()
{
    apt-get indextargets --format '$(SITE) $(RELEASE)' 'Created-By: Packages' 'Origin: Debian' 2>/dev/null | sort -u
}

debian_mirror()
{
    apt-get indextargets --format '$(SITE)' 'Created-By: Packages' 'Origin: Debian' 'Label: Debian' 2>/dev/null | head -n 1
}

install_packages "${packages[@]}"
fetch_juce
if [ $with_arm64 = yes ]; then fetch_arm64_libraries; fi
