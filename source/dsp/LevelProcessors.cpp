#include "LevelProcessors.h"

#include <cmath>

namespace luna::temp
{

void StereoLevelProcessor::prepare (double sampleRate)
{
    left.prepare (sampleRate);
    right.prepare (sampleRate);
}

void StereoLevelProcessor::process (const juce::dsp::AudioBlock<const float>& block) noexcept
{
    const auto numChannels = block.getNumChannels();

    if (numChannels != 1 && numChannels != 2)
        return;

    const auto track = [&] (LevelChannel& channel, const float* samples)
    {
        for (size_t i = 0; i < block.getNumSamples(); ++i)
            channel.processSample (std::abs (samples[i]));

        channel.discardNonFiniteState();
    };

    track (left, block.getChannelPointer (0));
    track (right, block.getChannelPointer (numChannels - 1));
}

void StereoLevelProcessor::resetMaxima() noexcept
{
    left.resetMaxima();
    right.resetMaxima();
}

double StereoLevelProcessor::getMaxPeak() noexcept
{
    return juce::jmax (left.getData().maxPeak, right.getData().maxPeak);
}

void InputOutputLevelProcessor::prepare (double sampleRate)
{
    input.prepare (sampleRate);
    output.prepare (sampleRate);
}

void InputOutputLevelProcessor::resetMaxima() noexcept
{
    input.resetMaxima();
    output.resetMaxima();
}

} // namespace luna::temp
