#!/usr/bin/env bash
# Installs, updates and removes a stand-in for the module and the real bank, in a temporary home: from the project, and
# from a folder as the release's archive holds it.
set -euo pipefail
export LC_ALL=C
cd "$(dirname "$0")/../.."

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME=$home/home XDG_CONFIG_HOME=$home/configuration
mkdir "$HOME"

presets=$XDG_CONFIG_HOME/Tessarin/Orvo/Presets
factory=$presets/Factory
module=$home/built/Orvo.vst3

check() { "${@:2}" || { echo "FAILED: $1" >&2; exit 1; }; }
not() { if "$@"; then return 1; fi; }
run() { "scripts/$1.sh" "${@:2}" > "$home/output" 2>&1; }
same_bank() { diff -r --exclude=.gitattributes presets "$factory" > "$home/difference"; }
snapshot() { find "$home/home" "$home/configuration" -printf '%p %i %s %T@\n' | sort; }

# Nothing was built.
check "installing without a module fails" not run install --module "$module"
check "the message names the build script" grep -q "scripts/build.sh" "$home/output"
check "a failed installation leaves nothing" [ ! -e "$XDG_CONFIG_HOME" -a ! -e "$HOME/.vst3" ]

# A first installation beside what the user has.
mkdir -p "$module/Contents/x86_64-linux" "$presets/User"
echo one > "$module/Contents/x86_64-linux/Orvo.so"
echo mine > "$presets/User/Mine.tpre"
echo settings > "${presets%/*}/settings.settings"
check "installing works" run install --module "$module"
check "the bank is complete" same_bank
check "the module is complete" diff -r "$module" "$HOME/.vst3/Orvo.vst3"

snapshot > "$home/before"
check "installing again works" run install --module "$module"
snapshot > "$home/after"
check "installing again touches nothing" cmp "$home/before" "$home/after"

# An update: another module, presets that the new version lacks, a damaged one, and a file of the user's among them.
echo two > "$module/Contents/x86_64-linux/Orvo.so"
touch "$HOME/.vst3/Orvo.vst3/Contents/old"
mkdir "$factory/Gone"
echo old | tee "$factory/Gone/Old.tpre" > "$factory/Drums/Old.tpre"
printf 'preset Gone/Old.tpre\npreset Drums/Old.tpre\n' >> "$presets/.orvo-installed"
echo damaged > "$factory/Drums/Snare Crack.tpre"
check "updating works" run install --module "$module"
check "old presets go and damaged ones are mended" same_bank
check "the module is the new one" diff -r "$module" "$HOME/.vst3/Orvo.vst3"

# Removing leaves the user's files and no other.
echo mine > "$factory/Drums/Mine.tpre"
check "removing works" run uninstall
printf '%s\n' "$factory/Drums/Mine.tpre" "$presets/User/Mine.tpre" "${presets%/*}/settings.settings" > "$home/expected"
check "only the user's files stay" diff <(find "$XDG_CONFIG_HOME" "$HOME" -type f | sort) "$home/expected"
check "the module is gone" [ ! -e "$HOME/.vst3/Orvo.vst3" ]
check "removing again works" run uninstall

# A damaged list never reaches outside the plug-in's folders.
printf 'module %s\npreset ../User/Mine.tpre\n' "$HOME/.vst3/Orvo.vst3" > "$presets/.orvo-installed"
check "a list that names other files is refused" not run uninstall
printf 'module %s\nmanual Presets/User/Mine.tpre\n' "$HOME/.vst3/Orvo.vst3" > "$presets/.orvo-installed"
check "a list that names no manual is refused" not run uninstall
check "the user's preset is still there" [ -f "$presets/User/Mine.tpre" ]
rm "$presets/.orvo-installed"

# Without XDG_CONFIG_HOME.
unset XDG_CONFIG_HOME
check "installing into ~/.config works" run install --module "$module"
factory=$HOME/.config/Tessarin/Orvo/Presets/Factory
check "the bank is in ~/.config" same_bank
check "removing from ~/.config works" run uninstall
check "nothing stays in ~/.config" [ -z "$(ls "$HOME/.config")" ]

# As unpacked from the archive, which has nothing of the project around it. The manual goes where its button looks.
unpacked="$home/unpacked folder"
mkdir -p "$unpacked/lib"
cp scripts/install.sh scripts/uninstall.sh "$unpacked"
cp scripts/lib/common.sh scripts/lib/installation.sh "$unpacked/lib"
cp -R presets "$module" "$unpacked"
echo manual > "$unpacked/Orvo Manual 1.0.1.pdf"
cd "$home"
check "installing from the archive works" "$unpacked/install.sh" > "$home/output"
check "the archive's bank is complete" diff -r --exclude=.gitattributes "$unpacked/presets" "$factory"
check "the archive's module is complete" diff -r "$module" "$HOME/.vst3/Orvo.vst3"
check "the manual is in place" cmp "$unpacked/Orvo Manual 1.0.1.pdf" "$HOME/.config/Tessarin/Orvo/Orvo Manual 1.0.1.pdf"
mv "$unpacked/Orvo Manual 1.0.1.pdf" "$unpacked/Orvo Manual 1.1.pdf"
check "updating from the archive works" "$unpacked/install.sh" > "$home/output"
check "the old manual goes" [ "$(ls "$HOME/.config/Tessarin/Orvo")" = "Orvo Manual 1.1.pdf
Presets" ]
check "removing with the archive's script works" "$unpacked/uninstall.sh" > "$home/output"
check "nothing stays of the archive's files" [ -z "$(find "$HOME/.config" "$HOME/.vst3" -mindepth 1)" ]
