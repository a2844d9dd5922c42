#!/usr/bin/env bash
# usage: uninstall.sh
# Removes for this user the modules that install.sh installed, and the factory presets that the plug-in took from it. The
# user's own presets, also those among the factory's, settings and log stay. A second run finds nothing to do.
set -euo pipefail
caller=$PWD
cd "$(dirname "$0")"
source lib/common.sh
source lib/installation.sh

[ $# -eq 0 ] || fail "usage: $0"

modules=("$(installed_as Orvo.vst3)" "$(installed_as Orvo.lv2)")
rm -rf -- "${modules[@]}"

# The plug-in's own list: its version, then for each file what cksum prints of it, and the name.
list=$factory/.orvo-bank
if [ -f "$list" ]; then
    while read -r sum size file; do
        case /$file/ in */../*) fail "$list names a file outside the factory folder: $file" ;; esac
        if [ -L "$factory/$file" ] || [ ! -f "$factory/$file" ]; then continue; fi
        if [ "$(cksum < "$factory/$file")" = "$sum $size" ]; then rm -- "$factory/$file"; fi
    done < <(tail -n +2 -- "$list")
    rm -- "$list"
    find "$factory" -depth -type d -empty -delete
fi
rmdir -- "$configuration/Presets" "$configuration" "$base/Tessarin" 2> /dev/null || true

say "removed: ${modules[*]}, and the factory presets"
say "your own presets, settings and the log stay in $configuration"
