#pragma once

#include "dsp/simd/KernelTable.h"

#include <juce_dsp/juce_dsp.h>

#include <vector>

/** The oversampler that sounds: what an entry of JuceOversamplers would do to the audio, bit for bit, by way of
    kernels.

    Taps come from JUCE's filter design with the settings of that entry's stages; the last step is the same
    all-pass delay that makes the latency whole. Works on parts of a block that stay in the processor's first
    cache. Construction allocates, nothing else does.
*/
class HalfBandOversampler
{
public:
    /** Samples at the host's rate that may come at once. */
    static constexpr size_t longestPart = 256;

    /** `exponent`: the number of stages, 0 to 4. */
    HalfBandOversampler (size_t numChannels, size_t exponent);

    void reset() noexcept;

    /** Fills `output`, which has 2^exponent times the length of `input`. */
    void processUp (const juce::dsp::AudioBlock<const float>& input,
                    juce::dsp::AudioBlock<float> output) noexcept;

    /** The way back, delay included. */
    void processDown (const juce::dsp::AudioBlock<const float>& input,
                      juce::dsp::AudioBlock<float> output) noexcept;

private:
    struct Line
    {
        std::vector<float> up, downEven, downOdd;
    };

    struct Delay
    {
        float previousInput = 0.0f;
        float previousOutput = 0.0f;
    };

    void delay (juce::dsp::AudioBlock<float>& block) noexcept;

    size_t exponent;

    /** Of the delay's all-pass; only behind stages. */
    float allpass = 0.0f;
    bool isDelayed = false;

    /** Stage after stage for each channel. */
    std::vector<std::vector<Line>> lines;
    std::vector<Delay> delays;

    /** Between two stages. */
    std::vector<float> between[2];
};
