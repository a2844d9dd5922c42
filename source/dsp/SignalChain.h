#pragma once

#include "common/Sections.h"
#include "dsp/HalfBandOversampler.h"
#include "dsp/MultiModeClipper.h"
#include "dsp/ThreeBandSplitter.h"

#include <array>
#include <vector>

/** The road of a block from the input gain to the ceiling: up to the oversampled rate, through the sections of the
    layout and "post", and down again.

    It drives parts that its owner holds and sets. Settings act between two blocks, in one step; nothing is smoothed.
    One thread at a time; `process` and `setFactor` neither allocate nor lock.
*/
class SignalChain
{
public:
    struct Parts
    {
        /** By `SectionRow`. */
        std::array<MultiModeClipper*, numSections> sections;

        ThreeBandSplitter& splitter;
        juce::AudioBuffer<float>&midBuffer, &sideBuffer;
        juce::dsp::AudioBlock<float>&midBlock, &sideBlock;

        /** Runs at the host's rate, in every layout. Only its threshold is ever set. */
        luna::HardClipper& ceiling;
    };

    /** What a block is processed with. */
    struct Settings
    {
        float inputGainDb = 0.0f;
        int layout = Layout::singleBand;

        /** The band that is heard alone, or `Solo::none`. */
        int soloBand = Solo::none;
        std::array<bool, numBands> isBandMuted {};
    };

    explicit SignalChain (const Parts& partsToUse) : parts (partsToUse) {}

    /** Makes room for every factor; `setFactor` has to follow. `sampleRate` in Hz, at the host's rate. */
    void prepare (double sampleRate, int maximumBlockSize, int numChannels);

    /** Prepares all parts for 2^exponent times the host's rate, and clears them. */
    void setFactor (int exponent);

    /** In place; no longer than prepared. A sample that is no number leaves as silence, and no part keeps it. */
    void process (juce::dsp::AudioBlock<float> block, const Settings&);

private:
    [[nodiscard]] juce::dsp::ProcessSpec getSpec (int factorExponent) const;
    bool processPart (juce::dsp::AudioBlock<float>& part, const Settings&);
    void runSection (size_t row, juce::dsp::AudioBlock<float> block);
    void runSections (juce::dsp::AudioBlock<float>& block, const Settings&);
    void runMultiBand (juce::dsp::AudioBlock<float>& block, const Settings&);
    void runMidSide (juce::dsp::AudioBlock<float>& block);
    void runLeftRight (juce::dsp::AudioBlock<float>& block);

    /** Samples at the oversampled rate in one part of a block: with the crossover's bands about 24 KB, and with the
        filters' lines still less than a first-level cache. */
    static constexpr size_t oversampledPartLength = 512;
    static_assert (oversampledPartLength >> 1 <= HalfBandOversampler::longestPart);

    const Parts parts;
    double sampleRate = 0.0;
    int blockSize = 0;
    int numChannels = 0;
    int exponent = 0;

    /** By exponent. */
    std::vector<HalfBandOversampler> oversamplers;
    juce::AudioBuffer<float> oversampledPart;

    /** The bands that reach the sum. */
    juce::Array<int> bandsToMerge;
};
