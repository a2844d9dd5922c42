#!/usr/bin/env bash
# usage: packaging/collect_licences.sh JUCE OUTDIR
# Copies the licences of everything that stands in the module or the manual into OUTDIR.
set -euo pipefail
juce=$(realpath -- "$1")
out=$(realpath -m -- "$2")

cd "$(dirname "$0")/.."
source scripts/lib/common.sh
mkdir -p -- "$out"

licence()
{
    [ -f "$1" ] || fail "a licence is missing: $1"
    cp -- "$1" "$out/$2"
}
licence LICENSE Orvo.txt
licence resources/fonts/OFL.txt Nunito.txt
licence "$juce/LICENSE.md" JUCE.md
licence "$juce/modules/juce_audio_processors/format_types/VST3_SDK/LICENSE.txt" VST3-SDK.txt
licence "$juce/modules/juce_audio_processors/format_types/LV2_SDK/lv2/COPYING" LV2.txt
licence "$juce/modules/juce_graphics/fonts/harfbuzz/COPYING" HarfBuzz.txt
licence "$juce/modules/juce_graphics/unicode/sheenbidi/LICENSE" SheenBidi.txt
licence /usr/share/doc/libfftw3-dev/copyright FFTW.txt
licence /usr/share/doc/libjpeg62-turbo-dev/copyright libjpeg.txt
licence /usr/share/common-licenses/GPL-2 GPL-2.txt
licence /usr/share/common-licenses/GPL-3 GPL-3.txt
licence "/usr/share/doc/gcc-$(gcc -dumpversion | cut -d. -f1)-base/copyright" GCC-runtime.txt
licence /usr/share/ruby-asciidoctor-pdf/data/fonts/LICENSE-noto Noto-Sans.txt
licence /usr/share/ruby-asciidoctor-pdf/data/fonts/LICENSE-mplus M-plus.txt
