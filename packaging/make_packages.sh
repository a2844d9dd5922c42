#!/usr/bin/env bash
# usage: packaging/make_packages.sh VERSION ARCHITECTURE BUILD JUCE OUTDIR [SYSROOT]
# Packs OUTDIR/orvo-{vst3,lv2,tools}_VERSION-1_ARCHITECTURE.deb from a build folder that has everything built already, so
# that packages and archive hold the same module. ARCHITECTURE is Debian's name, such as amd64. Another machine's
# libraries, which tell the packages' dependencies, are in SYSROOT, as scripts/setup.sh --arm64 leaves them. Fails if lintian
# finds an error or warns.
set -euo pipefail
export LC_ALL=C TZ=UTC

version=$1
architecture=$2
build=$(realpath -- "$3")
juce=$(realpath -- "$4")
out=$(realpath -m -- "$5")
sysroot=${6:+$(realpath -e -- "$6")}

cd "$(dirname "$0")/.."
source scripts/lib/common.sh

work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT
tree=$work/orvo-$version
mkdir -p -- "$tree" "$out"
cp -R -- packaging/debian "$tree"
cp -- CHANGELOG.md "$tree"

SOURCE_DATE_EPOCH=$(source_date)
export SOURCE_DATE_EPOCH
cat > "$tree/debian/changelog" <<CHANGELOG
orvo ($version-1) unstable; urgency=medium

  * Built from commit $(git rev-parse --short HEAD 2> /dev/null || echo unknown); see changelog.gz for what changed.

 -- Tessarin <support@tessarin.example>  $(date --utc --date "@$SOURCE_DATE_EPOCH" --rfc-email)
CHANGELOG

# What every Debian system has is named; the rest is told in full.
packaging/collect_licences.sh "$juce" "$work/licences"
for licence in "$work"/licences/*; do
    name=$(basename -- "${licence%.*}")
    common=""
    case $name in GPL-2 | GPL-3) common=$name ;; esac
    if head -n 5 "$licence" | grep -q "Apache License"; then common=Apache-2.0; fi

    printf '\nLicense: %s\n' "$name"
    if [ -n "$common" ]; then
        echo " On Debian systems, the full text is in /usr/share/common-licenses/$common."
    else
        sed -e 's/[[:space:]]*$//' -e 's/^$/./' -e 's/^/ /' "$licence"
    fi
done >> "$tree/debian/copyright"

# What the module opens with its window is not linked, so that no tool finds it.
window=$(awk '/^#/ { on = /opened with the window/; next } on && NF { print $2 }' packaging/libraries.txt | paste -sd, | sed 's/,/, /g')

say "packing for Debian ($architecture)"
log=$out/packages.log
(cd "$tree" && ORVO_BUILD=$build ORVO_WINDOW=$window ORVO_SYSROOT=$sysroot DEB_BUILD_OPTIONS=noautodbgsym \
    dpkg-buildpackage --build=binary --host-arch "$architecture" --no-sign) > "$log" 2>&1 || { cat "$log" >&2; fail "the packages could not be made"; }
# The packages are not for Debian's own archive, whose first upload closes a report.
lintian --fail-on error,warning --suppress-tags initial-upload-closes-no-bugs "$work"/*.changes || fail "lintian does not accept the packages"
mv -- "$work"/*.deb "$out"
rm -- "$log"
say "packed: $(cd "$out" && ls -- *"_$version-1_$architecture.deb" | paste -sd ' ')"
