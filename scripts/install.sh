#!/usr/bin/env bash
# usage: install.sh [--module PATH]
# Installs for this user, without root: the module into ~/.vst3, and the factory presets and the manual into the folder
# of the plug-in's configuration. Run again, it updates: what differs is replaced, and factory presets of an older
# version go. The user's own presets are never touched.
# It stands in the project, where it takes what was built in out/, and in the release's archive, beside the files.
set -euo pipefail
caller=$PWD
cd "$(dirname "$0")"
source lib/common.sh
source lib/installation.sh

if [ -d Orvo.vst3 ]; then
    built=$PWD
else
    cd ..
    built=$PWD/out
fi

module=$built/Orvo.vst3
case "${1:-}" in
    "") ;;
    --module) [ $# -eq 2 ] || fail "--module needs a path"
              module=$(cd "$caller" && realpath -m -- "$2") ;;
    *) fail "usage: $0 [--module PATH]" ;;
esac

compgen -G "$module/Contents/*/Orvo.so" > /dev/null || fail "no module at $module: build it first, with scripts/build.sh"

export LC_ALL=C
new_presets=$(cd presets && find . -type f \( -name '*.tpre' -o -name _description.txt \) -printf '%P\n' | sort)
[ -n "$new_presets" ] || fail "no presets in $PWD/presets"
old_presets=$(installed preset | sort)
old_manuals=$(installed manual)

# The window's button opens the manual of its own version. There is none if it was not built.
new_manual=$(compgen -G "$built/Orvo Manual *.pdf" | sort -V | tail -n 1 || true)

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

# put_manifest MANUALS PRESET...: before the first copy with what is old and new, so that a stopped installation can be
# removed. Manuals are a name a line.
put_manifest()
{
    {
        printf 'module %s\n' "$installed_module"
        lines "$1" | sed 's/^/manual /'
        printf 'preset %s\n' "${@:2}"
    } > "$notes"
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

put_manifest "$old_manuals
${new_manual##*/}" "${either[@]}"
for file in "${current[@]}"; do put "presets/$file" "$factory/$file"; done
for file in "${outdated[@]}"; do remove_preset "$file"; done
if [ -n "$new_manual" ]; then put "$new_manual" "$configuration/${new_manual##*/}"; fi
while read -r file; do
    if [ "$file" != "${new_manual##*/}" ]; then remove_manual "$file"; fi
done < <(lines "$old_manuals")
put_module
put_manifest "${new_manual##*/}" "${current[@]}"

say "installed: $installed_module"
say "installed: $(grep -c '\.tpre$' <<< "$new_presets") factory presets in $factory"
if [ -n "$new_manual" ]; then say "installed: $configuration/${new_manual##*/}"; fi
if [ ${#outdated[@]} -gt 0 ]; then say "removed: ${#outdated[@]} factory files of an older version"; fi

missing=$(ldd "$installed_module"/Contents/*/Orvo.so 2> /dev/null | sed -n 's/^[[:space:]]*\([^ ]*\) => not found$/\1/p' | sort -u || true)
if [ -n "$missing" ]; then say "this system lacks what Orvo needs: $(tr '\n' ' ' <<< "$missing")"; fi
