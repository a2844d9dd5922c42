#!/usr/bin/env bash
# usage: scripts/compare_modules.sh BEFORE AFTER [RECORDING.wav]
# Whether two built modules, each an Orvo.vst3 or an Orvo.lv2, sound the same: renders every preset of the bank through both, in all four layouts and at all
# five oversampling factors, and compares the files, and the state of every preset, byte for byte. Stops at the first
# difference and names it. Both are driven by the host program that was built last, or by the one that ORVO_HOST names; a
# module for 64-bit ARM, on another processor, by that of scripts/arm64.sh under the emulator. Without a recording: two
# seconds of chords and noise.
set -euo pipefail
caller=$PWD
cd "$(dirname "$0")/.."
source scripts/lib/common.sh

make_sound()
{
    python3 - "$1" << 'END'
import math, random, struct, sys, wave
rate, seconds = 44100, 2
random.seed(1)
frames = bytearray()
for i in range(rate * seconds):
    t = i / rate
    struck = t % 0.4
    for side, root in enumerate((55.0, 82.5)):
        chord = sum(math.sin(2 * math.pi * root * n * t) / n for n in range(1, 40))
        hiss = random.uniform(-1, 1) * math.exp(-40 * struck)
        value = 0.6 * math.exp(-6 * struck) * chord + 0.5 * hiss
        frames += struct.pack('<h', round(32767 * max(-1, min(1, value * (0.2 if t > 1.6 else 1)))))
with wave.open(sys.argv[1], 'wb') as out:
    out.setnchannels(2)
    out.setsampwidth(2)
    out.setframerate(rate)
    out.writeframes(frames)
END
}

# library_of MODULE: prints the library in a bundle, if it is one.
library_of()
{
    local name
    name=$(basename -- "${1%.*}")
    compgen -G "$1/Contents/*/$name.so" || compgen -G "$1/$name.so"
}

# is_for_arm LIBRARY: by the processor's number in its header.
is_for_arm() { [ "$(od -An -t u2 -j 18 -N 2 -- "$1")" -eq 183 ]; }

# run SIDE ARGUMENT...: the host program, which says nothing unless it fails.
run()
{
    local side=$1 command=$2 program=("$host")
    shift 2
    if is_for_arm "$(library_of "${!side}")" && [ "$(uname -m)" != aarch64 ]; then
        program=(qemu-aarch64 -L "$project/.deps/arm64" "$project/build/arm64/bin/orvo-host")
    fi
    "${program[@]}" "$command" --plugin "${!side}" --force "$@" > "$work/$$.log" 2>&1 \
        || { cat "$work/$$.log" >&2; echo "error: $side: $command $*" >&2; return 1; }
}

# compare_states A B: of another format, the plug-in's own part: a mark of four bytes, its length in four, the text and an end.
# JUCE has VST3's bypass behind it.
compare_states()
{
    local size
    size=$(($(od -An -t u4 -j 4 -N 4 -- "$1") + 9))
    if [ "${before##*.}" = "${after##*.}" ]; then size=$(stat -c %s -- "$1" "$2" | sort -n | tail -n 1); fi
    cmp -n "$size" -- "$1" "$2"
}

# compare_preset NAME: ends xargs if anything differs.
compare_preset()
{
    local layout factor side
    for side in before after; do
        run "$side" state --preset "$1" save "$work/$$.$side" || exit 255
    done
    compare_states "$work/$$.before" "$work/$$.after" || { echo "different: the state of $1"; exit 255; }

    for layout in 0 1 2 3; do
        for factor in 0 1 2 3 4; do
            for side in before after; do
                run "$side" render --preset "$1" --set "layout=$layout" --set "oversampling=$factor" --bits float \
                    "$recording" "$work/$$.$side.wav" || exit 255
            done
            cmp "$work/$$.before.wav" "$work/$$.after.wav" \
                || { echo "different: $1 in layout $layout at $((1 << factor))x"; exit 255; }
        done
    done
    rm -f "$work/$$".*
    echo "the same: $1"
}

if [ $# -lt 2 ] || [ $# -gt 3 ]; then fail "usage: scripts/compare_modules.sh BEFORE AFTER [RECORDING.wav]"; fi
before=$(cd "$caller" && realpath -e -- "$1")
after=$(cd "$caller" && realpath -e -- "$2")
for module in "$before" "$after"; do
    library_of "$module" > /dev/null || fail "$module is no module: the bundle and the library in it have one name"
done
project=$PWD
newest=$(ls -t "$PWD"/out/bin/orvo-host "$PWD"/build/*/bin/orvo-host 2> /dev/null | grep -v /arm64/ | head -n 1 || true)
host=${ORVO_HOST:-$newest}
[ -x "$host" ] || fail "no orvo-host: build it first"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
recording=$work/sound.wav
if [ $# -eq 3 ]; then recording=$(cd "$caller" && realpath -e -- "$3"); else make_sound "$recording"; fi

mkdir -p "$work/Tessarin/Orvo/Presets"
cp -r presets "$work/Tessarin/Orvo/Presets/Factory"
export XDG_CONFIG_HOME=$work before after host project work recording
export -f compare_states library_of is_for_arm run compare_preset

(cd presets && find . -name '*.tpre' -printf '%P\n') | sed 's/\.tpre$//' | sort > "$work/names"
[ -s "$work/names" ] || fail "no presets"
sed 's|^|Factory/|' "$work/names" | tr '\n' '\0' \
    | xargs -0 -n 1 -P "$(nproc)" bash -c 'compare_preset "$1"' _ \
    || fail "the modules differ, or one could not be run"
say "$(wc -l < "$work/names") presets, four layouts, five factors, and states: the same"
