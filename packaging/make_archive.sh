#!/usr/bin/env bash
# usage: packaging/make_archive.sh VERSION VST3 LV2 MANUAL JUCE OUTDIR
# Packs OUTDIR/Orvo-VERSION-linux-ARCHITECTURE.tar.gz from the built bundles, into which it puts the manual, and the project's
# files. The same bundles and manual of one commit give the same archive.
set -euo pipefail
export LC_ALL=C TZ=UTC

version=$1
vst3=$(realpath -- "$2")
lv2=$(realpath -- "$3")
manual=$(realpath -- "$4")
juce=$(realpath -- "$5")
out=$(realpath -m -- "$6")

cd "$(dirname "$0")/.."
source scripts/lib/common.sh

# Of the module, which may be another machine's.
architecture=$(basename -- "$vst3"/Contents/*-linux)
architecture=${architecture%-linux}
strip=strip
[ "$architecture" = "$(uname -m)" ] || strip=$architecture-linux-gnu-strip

name=Orvo-$version-linux-$architecture
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT
top=$work/$name
mkdir -p -- "$top/lib" "$out"

cp -R -- "$vst3" "$top/Orvo.vst3"
cp -R -- "$lv2" "$top/Orvo.lv2"
libraries=("$top"/Orvo.vst3/Contents/*/Orvo.so "$top/Orvo.lv2/Orvo.so")
"$strip" --strip-unneeded "${libraries[@]}"
cp -- "$manual" "$top/Orvo.vst3/Contents/Resources"
cp -- "$manual" "$top/Orvo.lv2/Resources"
cp -- scripts/install.sh scripts/uninstall.sh "$top"
cp -- scripts/lib/common.sh scripts/lib/installation.sh "$top/lib"

packaging/collect_licences.sh "$juce" "$top/licences"

# libraries GROUP: the table's names and packages of that group.
libraries()
{
    awk -v group="# $1" -v processor="$architecture" '/^#/ { on = $0 == group }
        on && /^[^#]/ && (NF < 4 || $4 == processor) { printf "  %-22s %s\n", $1, $2 }' packaging/libraries.txt
}

# The newest version of the C library that a module asks for.
glibc=$(readelf -V "${libraries[@]}" | grep -o 'GLIBC_[0-9.]*' | sort -Vu | tail -n 1)
cat > "$top/README.txt" <<README
Orvo $version, a clipper for mixing and mastering: a VST3 and LV2 plug-in for Linux, $architecture

  ./install.sh      copies the folder Orvo.vst3 into ~/.vst3 and Orvo.lv2 into ~/.lv2, as you may do by hand with the one
                    that your host knows: each has everything in it
  ./uninstall.sh    removes them again; your own presets and settings stay

The manual is "Orvo.vst3/Contents/Resources/$(basename -- "$manual")"; the question mark in
Orvo's window opens it.

The modules need these shared libraries; behind them stand Debian's packages. libc must be version ${glibc#GLIBC_}
or newer, as since Debian 12, Ubuntu 22.04 and RHEL 9.

$(libraries linked)

and to open its window

$(libraries "opened with the window")

Orvo is free software under the GNU Affero General Public License, version 3 or later, without any warranty. The
texts of all licences are in the folder "licences". This archive was made from the sources of version $version,
commit $(git rev-parse HEAD 2> /dev/null || echo unknown).
README

find "$top" -type d -exec chmod 755 {} + -o -type f -exec chmod 644 {} +
chmod 755 "$top"/install.sh "$top"/uninstall.sh "${libraries[@]}"

archive=$out/$name.tar.gz
tar --create --directory "$work" --sort=name --format=ustar --mtime="@$(source_date)" --owner=0 --group=0 \
    --numeric-owner "$name" | gzip -n -9 > "$archive.new"
mv -- "$archive.new" "$archive"
say "packed: $archive"
