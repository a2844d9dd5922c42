#!/usr/bin/env bash
# usage: scripts/measure_sound.sh
# Plays test signals through the built module, by way of orvo-host, and brings what it reads from them to docs/sound.md
# and docs/images/sound. Takes a minute or two. What is calculated with is Debian's NumPy, installed with apt (with sudo,
# after saying so); QEMU plays the processor without AVX2.
# The module is out/Orvo.vst3 or, if that was not built, the one in build/ci; with it goes the orvo-host built beside it.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/lib/common.sh
source scripts/lib/packages.sh
source scripts/lib/built.sh

if [ $# -gt 0 ]; then fail "usage: scripts/measure_sound.sh"; fi
find_build
install_packages python3 python3-numpy qemu-user
PYTHONPATH=scripts PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 -m sound.page "$program" "$module" docs/sound.md
