#!/usr/bin/env bash
# usage: scripts/install.sh [--module PATH]
# Installs for this user, without root: the built module (out/Orvo.vst3, or PATH) into ~/.vst3, and the factory presets
# into the folder of the plug-in's configuration. Run again, it updates: what differs is replaced, and factory presets
# of an older version go. The user's own presets are never touched.
set -euo pipefail
caller=$PWD
cd "$(dirname "$0")/.."
source scripts/lib/common.sh
source scripts/lib/installation.sh

module=$PWD/out/Orvo.vst3
case "${1:-}" in
    "") ;;
    --module) [ $# -eq 2 ] || fail "--module needs a path"
              module=$(cd "$caller" && realpath -m -- "$2") ;;
    *) fail "usage: scripts/install.sh [--module PATH]" ;;
esac

compgen -G "$module/Contents/*/Orvo.so" > /dev/null || fail "no module at $module: run scripts/build.sh first"

export LC_ALL=C
new_presets=$(cd presets && find . -type f \( -name '*.tpre' -o -name _description.txt \) -printf '%P\n' | sort)
[ -n "$new_presets" ] || fail "no presets in $PWD/presets"
old_presets=$(installed preset | sort)

# Half-written things never stay, and an old module that could not be replaced comes back.
notes=$(mktemp)
staging=""
clean_up()
{
    rm -f -- "$notes"
    if [ -z "$staging" ]; then return; fi
    if [ ! -e "$installed_module" ]; then mv -T -- "$staging/old" "$installed_module" 2> /dev/null || true; fi
    rm -rf -- "$staging"
}
trap clean_up EXIT

# put FILE TARGET: FILE's content in TARGET, at once; a file that is the same stays.
put()
{
    if cmp -s -- "$1" "$2"; then return; fi
    mkdir -p -- "$(dirname -- "$2")"
    staging=$(mktemp -d -- "$(dirname -- "$2")/.orvo-XXXXXX")
    install -m 644 -- "$1" "$staging/new"
    mv -T -- "$staging/new" "$2"
    rmdir -- "$staging"
    staging=""
}

# put_manifest PRESET...: before the first copy with old and new presets, so that a stopped installation can be removed.
put_manifest()
{
    { printf 'module %s\n' "$installed_module"; printf 'preset %s\n' "$@"; } > "$notes"
    put "$notes" "$manifest"
}

put_module()
{
    if diff -rq --no-dereference -- "$module" "$installed_module" > /dev/null 2>&1; then return; fi
    mkdir -p -- "$HOME/.vst3"
    staging=$(mktemp -d -- "$HOME/.vst3/.orvo-XXXXXX")
    cp -R -- "$module" "$staging/new"
    if [ -e "$installed_module" ] || [ -L "$installed_module" ]; then mv -T -- "$installed_module" "$staging/old"; fi
    mv -T -- "$staging/new" "$installed_module"
    rm -rf -- "$staging"
    staging=""
}

lines() { printf '%s\n' "$@" | sed '/^$/d' | sort -u; }

mapfile -t either < <(lines "$old_presets" "$new_presets")
mapfile -t current <<< "$new_presets"
mapfile -t outdated < <(comm -23 <(lines "$old_presets") <(lines "$new_presets"))

put_manifest "${either[@]}"
for file in "${current[@]}"; do put "presets/$file" "$factory/$file"; done
for file in "${outdated[@]}"; do remove_preset "$file"; done
put_module
put_manifest "${current[@]}"

say "installed: $installed_module"
say "installed: $(grep -c '\.tpre$' <<< "$new_presets") factory presets in $factory"
if [ ${#outdated[@]} -gt 0 ]; then say "removed: ${#outdated[@]} factory files of an older version"; fi
