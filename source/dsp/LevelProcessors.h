#pragma once

#include "dsp/LevelChannel.h"

#include <juce_dsp/juce_dsp.h>

#include <array>

namespace luna::temp
{

/** The level tracking of a mono or stereo signal. A mono signal drives both records. */
struct StereoLevelProcessor
{
    void prepare (double sampleRate);

    /** Audio thread. A block of neither one nor two channels changes nothing. */
    void process (const juce::dsp::AudioBlock<const float>& block) noexcept;

    void resetMaxima() noexcept;

    /** The larger of both channels' maximum peaks, linear. */
    double getMaxPeak() noexcept;

    LevelChannel left, right;

private:
    void processPart (const std::array<const float*, 2>& samples, int numSamples) noexcept;
};

/** The level tracking of what enters and what leaves the plug-in, at the host's rate. */
struct InputOutputLevelProcessor
{
    void prepare (double sampleRate);
    void resetMaxima() noexcept;

    StereoLevelProcessor input, output;
};

} // namespace luna::temp
