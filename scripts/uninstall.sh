#!/usr/bin/env bash
# usage: uninstall.sh
# Removes what install.sh installed for this user: the module, the factory presets and the manual. The user's own
# presets, settings and log stay. A second run finds nothing to do.
set -euo pipefail
caller=$PWD
cd "$(dirname "$0")"
source lib/common.sh
source lib/installation.sh

[ $# -eq 0 ] || fail "usage: $0"

if [ ! -f "$manifest" ]; then
    say "nothing to remove: install.sh has left no list of files in $presets"
    exit
fi

module=$(installed module)
case $module in */.vst3/Orvo.vst3) ;; *) fail "$manifest names no module of ours: $module" ;; esac

mapfile -t files < <(installed preset)
for file in "${files[@]}"; do remove_preset "$file"; done
installed manual | while read -r file; do remove_manual "$file"; done
rm -rf -- "$module"
rm -f -- "$manifest"
for folder in "$factory" "$presets" "$configuration" "$base/Tessarin"; do
    rmdir -- "$folder" 2> /dev/null || true
done

say "removed: $module"
say "removed: $(printf '%s\n' "${files[@]}" | grep -c '\.tpre$' || true) factory presets from $factory"
say "your own presets, settings and the log stay in $configuration"
