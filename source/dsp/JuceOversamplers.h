#pragma once

#include <juce_dsp/juce_dsp.h>

using JuceOversamplers = juce::OwnedArray<juce::dsp::Oversampling<float>>;

/** One oversampler for each choice of the oversampling parameter: entry n runs at 2^n times the host's rate,
    through n half-band equiripple FIR stages of maximum quality, delayed to a whole number of samples at the
    host's rate. Entry 0 passes the signal on. Allocates.

    They tell the latency and are what HalfBandOversampler, which sounds, is measured by. No audio goes through
    them; see docs/decisions/2026-11-22-kept-by-name.md. */
[[nodiscard]] JuceOversamplers makeJuceOversamplers (int numChannels);
