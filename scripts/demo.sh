#!/usr/bin/env bash
# usage: scripts/demo.sh [FILE.wav]
# Sets up, builds, plays a recording through the built module in all four layouts, and leaves in out/demo the processed
# files, a picture of the waveform before and after, and one of the window while it plays. Without a file: a guitar recording of Debian's
# package chuck-data or, where documentation folders are left out, a sound of deepin-sound-theme.
set -euo pipefail
caller=$PWD
cd "$(dirname "$0")/.."
source scripts/lib/common.sh

find_recording()
{
    local package name file
    while read -r package name; do
        file=$(dpkg -L "$package" 2>/dev/null | grep "/$name\$" | head -n 1 || true)
        if [ -n "$file" ] && [ -f "$file" ]; then echo "$file"; return; fi
    done <<< 'chuck-data geetar.wav
deepin-sound-theme desktop-login.wav'
    fail "no recording found; name one: scripts/demo.sh FILE.wav"
}

# play NAME SETTING...: one line of the table, and out/demo/NAME.wav. The first call prints the table's header too.
header=1
play()
{
    local name=$1 settings=() setting
    shift
    for setting in "$@"; do settings+=(--set "$setting"); done
    out/bin/orvo-host render "$recording" "out/demo/$name.wav" --force "${settings[@]}" | tail -n "+$header"
    header=2
}

if [ $# -gt 1 ]; then fail "usage: scripts/demo.sh [FILE.wav]"; fi
recording=""
if [ $# -eq 1 ]; then
    recording=$(cd "$caller" && realpath -- "$1")
    [ -f "$recording" ] || fail "no such file: $1"
fi

scripts/build.sh
if [ -z "$recording" ]; then recording=$(find_recording); fi
mkdir -p out/demo

# A quiet recording is driven hard; the ceiling and the last section keep what comes out.
say "playing $recording through out/Orvo.vst3"
play single-band oversampling=16x in_gain=12 \
    mode_single=Hard threshold_single=-6 gain_single=3
play multi-band "layout=Multi Band" oversampling=8x in_gain=12 \
    threshold_low_band=-9 "mode_mid_band=Soft II" threshold_mid_band=-12 threshold_high_band=-15 gain_high_band=3
play mid-side "layout=Mid / Side" oversampling=4x in_gain=12 \
    threshold_mid_channel=-9 "mode_high_channel=Pressure" threshold_high_channel=-12 gain_post=3
play left-right "layout=Left / Right" oversampling=2x in_gain=12 \
    threshold_left_channel=-6 mode_right_channel=Hard threshold_right_channel=-9

out/bin/orvo-host picture "$recording" out/demo/single-band.wav out/demo/before-and-after.png --force

say "opening the window on a virtual screen"
scripts/lib/with_screen.sh out/bin/orvo-host open --play "$recording" --screenshot "$PWD/out/demo/window.png" --force \
    --seconds 5 --set "layout=Multi Band" --set oversampling=8x --set in_gain=12 --set threshold_low_band=-9 \
    --set "mode_mid_band=Soft II" --set threshold_mid_band=-12 --set threshold_high_band=-15 --set gain_high_band=3

say "everything is in $PWD/out:"
for line in "Orvo.vst3|the plug-in; scripts/install.sh puts it where hosts look" \
    "bin/orvo-host|plays files through it, and opens its window: orvo-host open" \
    "demo/*.wav|the recording in the four layouts" \
    "demo/before-and-after.png|its waveform before and after" \
    "demo/window.png|the window while it played"; do
    printf '  %-28s %s\n' "${line%|*}" "${line#*|}"
done
