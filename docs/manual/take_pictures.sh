#!/usr/bin/env bash
# usage: scripts/lib/with_screen.sh docs/manual/take_pictures.sh ORVO-HOST ORVO-GALLERY OUTDIR
# Takes the manual's pictures of the built module's window, and draws the curves. Needs a virtual screen.
set -euo pipefail

host=$1
gallery=$2
out=$3
mkdir -p "$out"

# shoot NAME SCALE OPTION...: the window with the test signal running.
shoot()
{
    local name=$1 scale=$2
    shift 2
    "$host" open --screenshot "$out/$name.png" --force --seconds 6 --scale "$scale" "$@" > /dev/null
}

# visit NAME CLICK...: the window after clicks at places in its own pixels, at scale 1.5.
visit()
{
    local name=$1 reply window place process
    shift
    coproc session { "$host" open --script --scale 1.5 "${visit_options[@]}"; }
    process=$session_PID
    read -r _ window _ <&"${session[0]}"

    for place in "$@"; do
        xdotool mousemove --window "$window" $((${place%,*} * 3 / 2)) $((${place#*,} * 3 / 2)) \
            sleep 0.2 click 1 sleep 0.5
    done

    # Onto the tooltip strip, where nothing has a tooltip.
    xdotool mousemove --window "$window" 800 1180 sleep 0.5
    echo "picture $out/$name.png" >&"${session[1]}"
    read -r reply <&"${session[0]}"
    while [[ $reply == value* || $reply == begin* || $reply == end* ]]; do read -r reply <&"${session[0]}"; done
    [ "$reply" = ok ] || { echo "error: $name: $reply" >&2; exit 1; }
    echo quit >&"${session[1]}"
    wait "$process"
}

# cut_out NAME SOURCE GEOMETRY: a part of a picture.
cut_out() { convert "$out/$2.png" -crop "$3" +repage "$out/$1.png"; }

# number NAME SOURCE X,Y...: the picture with numbers from 1 at these places.
number()
{
    local name=$1 source=$2 n=0 place drawing=()
    shift 2
    for place in "$@"; do
        n=$((n + 1))
        drawing+=(-fill '#d64545' -stroke white -strokewidth 2 -draw "circle $place $((${place%,*} + 19)),${place#*,}"
                  -fill white -stroke none -gravity NorthWest
                  -annotate "+$((${place%,*} - 7))+$((${place#*,} - 16))" "$n")
    done
    convert "$out/$source.png" -font "$font" -pointsize 27 "${drawing[@]}" "$out/$name.png"
}

font=$(cd "$(dirname "$0")/../.." && pwd)/resources/fonts/NunitoSemiBold.ttf

shoot single-band 1.5 --set in_gain=5 --set oversampling=4x --set "mode_single=Soft I" --set shape_single=0.5 \
    --set threshold_single=-6 --set gain_single=4 --set threshold_post=-1 --set mode_post=Hard
shoot multi-band 1.5 --set "layout=Multi Band" --set in_gain=5 --set oversampling=2x --set threshold_low_band=-6 \
    --set "mode_mid_band=Soft II" --set threshold_mid_band=-5 --set mode_high_band=Boost --set shape_high_band=0.6 \
    --set threshold_high_band=-9 --set threshold_post=-1
shoot mid-side 1.5 --set "layout=Mid / Side" --set in_gain=4 --set threshold_mid_channel=-6 \
    --set shape_mid_channel=0.4 --set mode_high_channel=Boost --set threshold_high_channel=-12 \
    --set link_post=1 --set threshold_post=-2
shoot left-right 1.5 --set "layout=Left / Right" --set in_gain=4 --set threshold_left_channel=-5 \
    --set shape_left_channel=0.5 --set mode_right_channel=Hard --set threshold_right_channel=-7

for theme in Default Ice Night TwentyTwenty; do
    shoot "theme-${theme,,}" 1 --theme "$theme" --set in_gain=5 --set threshold_single=-6 --set shape_single=0.5
done

# Places in the top bar of a window of the first size.
browser_button=346,19
save_button=622,19
settings_button=722,19
visit_options=(--preset "Factory/Mastering/Gentle Master" --set in_gain=2)
visit browser $browser_button
visit save-window $save_button
visit settings-window $settings_button

number window single-band 130,28 800,110 130,490 400,490 860,490 1300,490 60,1177
cut_out cover single-band 1602x1200+0+0
cut_out save save-window 700x500+481+100
cut_out settings settings-window 700x380+481+100
cut_out waveform single-band 1602x402+0+57
cut_out meters single-band 260x570+1312+552

# A sheet has four curves in a row and room to the right of them.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$gallery" "$work" > /dev/null
for curve in "Hard hard" "Soft I soft-1" "Soft II soft-2" "Pressure pressure" "Boost boost"; do
    convert "$work/Default/Curve ${curve% *}@2x.png" -crop 2120x0+0+0 +repage "$out/curve-${curve##* }.png"
done
