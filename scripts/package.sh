#!/usr/bin/env bash
# Sets up, builds, and leaves the release's archive and the manual in out/.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/lib/common.sh

scripts/setup.sh --release
configure_and_build release --target package
