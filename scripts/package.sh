#!/usr/bin/env bash
# Sets up, builds, and leaves in out/ what is released: the archive, the Debian packages, the manual, and the modules with
# it.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/lib/common.sh

scripts/setup.sh --release
configure_and_build release --target package packages
scripts/build.sh
