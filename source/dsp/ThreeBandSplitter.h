#pragma once

#include "dsp/simd/KernelTable.h"

#include <juce_dsp/juce_dsp.h>

#include <vector>

/** A crossover into low, mid and high bands that sum to an all-pass, from fourth-order Linkwitz-Riley
    filters.

    Mid and high both pass the upper crossover, and an all-pass gives the low band the same phase. The five
    filters hold type and cutoff; the samples go through a kernel that yields what they would, bit for bit; see
    docs/decisions/2026-11-22-kept-by-name.md.

    All calls run with the processor's lock held, `split` and the merges on the audio thread. Nothing but
    `prepare` allocates. Crossovers step between two blocks: neither smoothed nor reset.
*/
class ThreeBandSplitter
{
public:
    /** In Hz; `low` must lie below `high`. A filter's cutoff stops short of half the sample rate, where it
        would become unstable. Keeps the filters' state. */
    void setFrequencies (float low, float high);

    /** At the oversampled rate. Allocates, and clears the filters. */
    void prepare (const juce::dsp::ProcessSpec& spec);

    /** Fills the blocks from the input, which must be no longer than the prepared size. */
    void split (const juce::dsp::AudioBlock<const float>& input);

    /** `split` of a block that comes in parts: the blocks hold the part's bands. After the last one,
        `finishBlock` sets states near zero to zero, and resets everything if a sample was no number. */
    void splitPart (const juce::dsp::AudioBlock<const float>& input);
    void finishBlock() noexcept;

    /** Writes low + mid + high. */
    void mergeAll (juce::dsp::AudioBlock<float> output) const;

    /** Writes the sum of the listed bands: 0 low, 1 mid, 2 high. An empty list stands for all bands; any
        other number ends the merge. */
    void mergeBands (juce::dsp::AudioBlock<float> output, const juce::Array<int>& bands) const;

    /** In Hz, as set last. */
    float lowFrequency = 200.0f;
    float highFrequency = 5000.0f;

    juce::dsp::LinkwitzRileyFilter<float> lowLowpass, lowHighpass, highLowpass, highHighpass, phaseAllpass;
    juce::AudioBuffer<float> lowBuffer, midBuffer, highBuffer, restBuffer;
    juce::dsp::AudioBlock<float> lowBlock, midBlock, highBlock, restBlock;

private:
    void setFilter (juce::dsp::LinkwitzRileyFilter<float>&, juce::dsp::LinkwitzRileyFilterType,
                    float cutoff) const;

    template <typename Function>
    void forEachFilter (Function&&);

    void reset() noexcept;

    /** In Hz; the filters' own rate before `prepare`. */
    double sampleRate = 44100.0;

    simd::SplitterCoefficients coefficients {};

    /** One per channel. */
    std::vector<simd::SplitterChannel> states;

    /** Whether the block so far was made of numbers. */
    bool isSafe = true;
};
