#!/usr/bin/env bash
# usage: install.sh [--module PATH]
# Installs for this user, without root: copies the module's bundle into ~/.vst3, in one step; run again, it updates. The
# bundle carries the manual and the factory presets, which the plug-in puts into the user's folder when it is loaded.
# It stands in the project, where it takes what was built in out/, and in the release's archive, beside the bundle.
set -euo pipefail
caller=$PWD
cd "$(dirname "$0")"
source lib/common.sh
source lib/installation.sh

module=$PWD/Orvo.vst3
[ -d "$module" ] || module=$(dirname "$PWD")/out/Orvo.vst3
case "${1:-}" in
    "") ;;
    --module) [ $# -eq 2 ] || fail "--module needs a path"
              module=$(cd "$caller" && realpath -m -- "$2") ;;
    *) fail "usage: $0 [--module PATH]" ;;
esac

compgen -G "$module/Contents/*/Orvo.so" > /dev/null || fail "no module at $module: build it first, with scripts/build.sh"

# Half a copy never stays, and an old module that could not be replaced comes back.
staging=""
clean_up()
{
    if [ -z "$staging" ]; then return; fi
    if [ ! -e "$installed_module" ]; then mv -T -- "$staging/old" "$installed_module" 2> /dev/null || true; fi
    rm -rf -- "$staging"
}
trap clean_up EXIT

if ! diff -rq --no-dereference -- "$module" "$installed_module" > /dev/null 2>&1; then
    mkdir -p -- "$HOME/.vst3"
    staging=$(mktemp -d -- "$HOME/.vst3/.orvo-XXXXXX")
    cp -R -- "$module" "$staging/new"
    if [ -e "$installed_module" ] || [ -L "$installed_module" ]; then mv -T -- "$installed_module" "$staging/old"; fi
    mv -T -- "$staging/new" "$installed_module"
fi
say "installed: $installed_module"

missing=$(ldd "$installed_module"/Contents/*/Orvo.so 2> /dev/null | sed -n 's/^[[:space:]]*\([^ ]*\) => not found$/\1/p' | sort -u || true)
if [ -n "$missing" ]; then say "this system lacks what Orvo needs: $(tr '\n' ' ' <<< "$missing")"; fi
