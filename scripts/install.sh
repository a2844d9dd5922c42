#!/usr/bin/env bash
# usage: install.sh [--module PATH]
# Installs for this user, without root: copies the plug-in's bundles into ~/.vst3 and ~/.lv2, each in one step, or the one
# that is named; run again, it updates. A bundle carries the manual and the factory presets, which the plug-in puts into the
# user's folder when it is loaded.
# It stands in the project, where it takes what was built in out/, and in the release's archive, beside the bundles.
set -euo pipefail
caller=$PWD
cd "$(dirname "$0")"
source lib/common.sh
source lib/installation.sh

folder=$PWD
[ -d "$folder/Orvo.vst3" ] || folder=$(dirname "$PWD")/out
modules=("$folder/Orvo.vst3" "$folder/Orvo.lv2")
case "${1:-}" in
    "") ;;
    --module) [ $# -eq 2 ] || fail "--module needs a path"
              modules=("$(cd "$caller" && realpath -m -- "$2")") ;;
    *) fail "usage: $0 [--module PATH]" ;;
esac

for module in "${modules[@]}"; do
    [ -n "$(library_of "$module")" ] || fail "no module at $module: build it first, with scripts/build.sh"
done

# Half a copy never stays, and an old module that could not be replaced comes back.
staging=""
clean_up()
{
    if [ -z "$staging" ]; then return; fi
    if [ ! -e "$installed" ]; then mv -T -- "$staging/old" "$installed" 2> /dev/null || true; fi
    rm -rf -- "$staging"
    staging=""
}
trap clean_up EXIT

for module in "${modules[@]}"; do
    installed=$(installed_as "$module")
    if ! diff -rq --no-dereference -- "$module" "$installed" > /dev/null 2>&1; then
        mkdir -p -- "$(dirname "$installed")"
        staging=$(mktemp -d -- "$(dirname "$installed")/.orvo-XXXXXX")
        cp -R -- "$module" "$staging/new"
        if [ -e "$installed" ] || [ -L "$installed" ]; then mv -T -- "$installed" "$staging/old"; fi
        mv -T -- "$staging/new" "$installed"
        clean_up
    fi
    say "installed: $installed"
done

missing=$(ldd "$(library_of "$installed")" 2> /dev/null | sed -n 's/^[[:space:]]*\([^ ]*\) => not found$/\1/p' | sort -u || true)
if [ -n "$missing" ]; then say "this system lacks what Orvo needs: $(tr '\n' ' ' <<< "$missing")"; fi
