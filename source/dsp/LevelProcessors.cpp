#include "LevelProcessors.h"

#include "dsp/simd/KernelTable.h"

#include <cmath>

namespace luna::temp
{

namespace
{
/** Short enough that most parts hold no new maximum. */
constexpr auto longestPart = 128;
} // namespace

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

    const std::array samples { block.getChannelPointer (0), block.getChannelPointer (numChannels - 1) };
    const auto numSamples = static_cast<int> (block.getNumSamples());

    for (auto start = 0; start < numSamples;)
    {
        // The sample at which a window's sum is rebuilt takes the plain way.
        auto length = juce::jmin (longestPart, numSamples - start);
        for (const auto* channel : { &left, &right })
            length = juce::jmin (length, channel->samplesUntilBreak());

        if (length > 0)
        {
            processPart ({ samples[0] + start, samples[1] + start }, length);
        }
        else
        {
            length = 1;
            left.processSample (std::abs (samples[0][start]));
            right.processSample (std::abs (samples[1][start]));
        }

        start += length;
    }

    left.discardNonFiniteState();
    right.discardNonFiniteState();
}

void StereoLevelProcessor::processPart (const std::array<const float*, 2>& samples, int numSamples) noexcept
{
    simd::LevelLanes lanes {};
    std::array<float*, 2> squares {};
    const std::array channels { &left, &right };

    for (size_t i = 0; i < channels.size(); ++i)
    {
        const auto& channel = *channels[i];
        lanes.peakLevel[i] = channel.peakLevel;
        lanes.peakCoefficient[i] = channel.peakCoefficient;
        lanes.maxPeak[i] = static_cast<float> (channel.maxPeak);
        lanes.rmsSum[i] = channel.rmsSum;
        lanes.maxRmsSum[i] = channel.maxRmsSum;
        squares[i] = channels[i]->squares.getRawDataPointer() + channel.rmsIndex;
    }

    simd::kernels().trackLevels (lanes, samples.data(), squares.data(), static_cast<size_t> (numSamples));

    for (size_t i = 0; i < channels.size(); ++i)
    {
        auto& channel = *channels[i];
        channel.holdAll (samples[i], numSamples, lanes.largest[i]);
        channel.rmsSum = lanes.rmsSum[i];
        channel.advance (numSamples);
        channel.peakLevel = lanes.peakLevel[i];
        channel.peak = static_cast<double> (channel.peakLevel);
        channel.maxPeak = static_cast<double> (lanes.maxPeak[i]);
        channel.maxRmsSum = lanes.maxRmsSum[i];
    }
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
