#!/usr/bin/env bash
# usage: install_test.sh ORVO-HOST ORVO.VST3 ORVO.LV2
# Installs, updates and removes the built modules in a temporary home, from the project and from a folder as the release's
# archive holds it, and loads it in between, as a host does.
set -euo pipefail
export LC_ALL=C
host=$1
module=$2
lv2=$3
cd "$(dirname "$0")/../.."

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME=$home/home XDG_CONFIG_HOME=$home/configuration
mkdir "$HOME"

presets=$XDG_CONFIG_HOME/Tessarin/Orvo/Presets
factory=$presets/Factory
installed=$HOME/.vst3/Orvo.vst3
installed_lv2=$HOME/.lv2/Orvo.lv2

check() { "${@:2}" || { echo "FAILED: $1" >&2; exit 1; }; }
not() { if "$@"; then return 1; fi; }
run() { "scripts/$1.sh" "${@:2}" > "$home/output" 2>&1; }
snapshot() { find "$home/home" "$home/configuration" -printf '%p %i %s %T@\n' | sort; }

# Nothing was built.
check "installing without a module fails" not run install --module "$home/nowhere/Orvo.vst3"
check "the message names the build script" grep -q "scripts/build.sh" "$home/output"
check "a failed installation leaves nothing" [ ! -e "$XDG_CONFIG_HOME" -a ! -e "$HOME/.vst3" ]

# A first installation beside what the user has.
mkdir -p "$presets/User"
echo mine > "$presets/User/Mine.tpre"
echo "<PROPERTIES/>" > "${presets%/*}/settings.settings"
check "installing works" run install --module "$module"
check "the module is complete" diff -r "$module" "$installed"
snapshot > "$home/before"
check "installing again works" run install --module "$module"
snapshot > "$home/after"
check "installing again touches nothing" cmp "$home/before" "$home/after"

# Loaded, it brings its presets; an update replaces it whole.
check "it can be loaded" "$host" presets --plugin "$installed" > "$home/output"
check "the bank is complete" diff -r --exclude=.gitattributes --exclude=.orvo-bank presets "$factory"
check "no other format was installed" [ ! -e "$HOME/.lv2" ]
check "installing the other one works" run install --module "$lv2"
check "it is complete" diff -r "$lv2" "$installed_lv2"
rm -r "$factory"
check "the other one can be loaded" "$host" presets --plugin "$installed_lv2" > "$home/output"
check "it brings the bank, too" diff -r --exclude=.gitattributes --exclude=.orvo-bank presets "$factory"
echo broken > "$installed_lv2/Orvo.so"
check "the installed one is not taken for another" "$host" presets --plugin "$lv2" > "$home/output"
check "updating the other one works" run install --module "$lv2"
check "it is the new one" diff -r "$lv2" "$installed_lv2"
touch "$installed/Contents/old"
echo damaged > "$installed/Contents/Resources/moduleinfo.json"
check "updating works" run install --module "$module"
check "the module is the new one" diff -r "$module" "$installed"

# Removing leaves the user's files and no other.
echo mine > "$factory/Drums/Mine.tpre"
echo changed >> "$factory/Drums/Snare Crack.tpre"
check "removing works" run uninstall
printf '%s\n' "$factory/Drums/Mine.tpre" "$factory/Drums/Snare Crack.tpre" "$presets/User/Mine.tpre" \
    "${presets%/*}/log.log" "${presets%/*}/settings.settings" > "$home/expected"
check "only the user's files stay" diff <(find "$XDG_CONFIG_HOME" "$HOME" -type f | sort) "$home/expected"
check "the modules are gone" [ ! -e "$installed" -a ! -e "$installed_lv2" ]
check "removing again works" run uninstall

# A damaged list never reaches outside the plug-in's folder.
printf '1.0.1\n%s ../User/Mine.tpre\n' "$(cksum < "$presets/User/Mine.tpre")" > "$factory/.orvo-bank"
check "a list that names other files is refused" not run uninstall
check "the user's preset is still there" [ -f "$presets/User/Mine.tpre" ]

# Without XDG_CONFIG_HOME, and as unpacked from the archive, which has nothing of the project around it.
unset XDG_CONFIG_HOME
unpacked="$home/unpacked folder"
mkdir -p "$unpacked/lib"
cp scripts/install.sh scripts/uninstall.sh "$unpacked"
cp scripts/lib/common.sh scripts/lib/installation.sh "$unpacked/lib"
cp -R "$module" "$lv2" "$unpacked"
cd "$home"
check "installing from the archive works" "$unpacked/install.sh" > "$home/output"
check "the archive's module is complete" diff -r "$module" "$installed"
check "and that of the other format" diff -r "$lv2" "$installed_lv2"
check "it can be loaded" "$host" presets --plugin "$installed" > "$home/output"
check "the bank is in ~/.config" [ -f "$HOME/.config/Tessarin/Orvo/Presets/Factory/.orvo-bank" ]
check "removing with the archive's script works" "$unpacked/uninstall.sh" > "$home/output"
check "nothing but the log stays" [ "$(find "$HOME/.config" "$HOME/.vst3" "$HOME/.lv2" -mindepth 1 ! -type d)" = "$HOME/.config/Tessarin/Orvo/log.log" ]
