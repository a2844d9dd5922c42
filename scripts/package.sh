#!/usr/bin/env bash
# Sets up, builds, and leaves the release's archive, the manual, and the module with it in out/.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/lib/common.sh

scripts/setup.sh --release
configure_and_build release --target package
scripts/build.sh
