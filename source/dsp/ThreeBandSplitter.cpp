#include "ThreeBandSplitter.h"

#include "dsp/FiniteCheck.h"

#include <array>
#include <cmath>

namespace
{
using Filter = juce::dsp::LinkwitzRileyFilter<float>;
using FilterType = juce::dsp::LinkwitzRileyFilterType;

constexpr auto channelsPerPass = 2;
} // namespace

template <typename Function>
void ThreeBandSplitter::forEachFilter (Function&& function)
{
    for (auto* filter : { &lowLowpass, &lowHighpass, &highLowpass, &highHighpass, &phaseAllpass })
        function (*filter);
}

void ThreeBandSplitter::setFilter (Filter& filter, FilterType type, float cutoff) const
{
    constexpr auto highestShareOfRate = 0.49;

    filter.setType (type);
    filter.setCutoffFrequency (juce::jmin (cutoff, static_cast<float> (highestShareOfRate * sampleRate)));
}

void ThreeBandSplitter::setFrequencies (float low, float high)
{
    lowFrequency = low;
    highFrequency = high;

    setFilter (lowLowpass, FilterType::lowpass, lowFrequency);
    setFilter (lowHighpass, FilterType::highpass, lowFrequency);
    setFilter (highLowpass, FilterType::lowpass, highFrequency);
    setFilter (highHighpass, FilterType::highpass, highFrequency);
    setFilter (phaseAllpass, FilterType::allpass, highFrequency);

    // As the filters work them out, which do not show them: mixed precision included.
    const auto g = [this] (const Filter& filter)
    {
        const auto cutoff = static_cast<double> (filter.getCutoffFrequency());
        return static_cast<float> (std::tan (juce::MathConstants<double>::pi * cutoff / sampleRate));
    };

    const auto r2 = static_cast<float> (std::sqrt (2.0));
    const auto h = [r2] (float gain)
    {
        return static_cast<float> (
            1.0 / (1.0 + static_cast<double> (r2 * gain) + static_cast<double> (gain * gain)));
    };

    const auto gLow = g (lowLowpass), gHigh = g (highLowpass);
    coefficients = { gLow, h (gLow), gHigh, h (gHigh), r2 };
}

void ThreeBandSplitter::prepare (const juce::dsp::ProcessSpec& spec)
{
    sampleRate = spec.sampleRate;
    forEachFilter ([&] (Filter& filter) { filter.prepare (spec); });

    // Memory that is large enough is kept.
    for (auto* buffer : { &lowBuffer, &midBuffer, &highBuffer, &restBuffer })
        buffer->setSize (static_cast<int> (spec.numChannels), static_cast<int> (spec.maximumBlockSize), false,
                         false, true);

    states.resize (spec.numChannels);
    reset();

    // The coefficients depend on the rate, which the filters know only now.
    setFrequencies (lowFrequency, highFrequency);
}

void ThreeBandSplitter::reset() noexcept
{
    forEachFilter ([] (Filter& filter) { filter.reset(); });
    std::fill (states.begin(), states.end(), simd::SplitterChannel {});
    isSafe = true;
}

void ThreeBandSplitter::split (const juce::dsp::AudioBlock<const float>& input)
{
    splitPart (input);
    finishBlock();
}

void ThreeBandSplitter::splitPart (const juce::dsp::AudioBlock<const float>& input)
{
    const auto view = [&] (juce::AudioBuffer<float>& buffer)
    {
        const juce::dsp::AudioBlock<float> whole (buffer);
        return whole.getSubsetChannelBlock (0, juce::jmin (whole.getNumChannels(), input.getNumChannels()))
            .getSubBlock (0, juce::jmin (whole.getNumSamples(), input.getNumSamples()));
    };

    lowBlock = view (lowBuffer);
    midBlock = view (midBuffer);
    highBlock = view (highBuffer);
    restBlock = view (restBuffer);

    const auto numChannels = lowBlock.getNumChannels();

    for (size_t channel = 0; channel < numChannels; channel += channelsPerPass)
    {
        std::array<const float*, channelsPerPass> in {};
        std::array<std::array<float*, channelsPerPass>, 4> out {};
        const auto count = juce::jmin (numChannels - channel, in.size());

        for (size_t i = 0; i < count; ++i)
        {
            in[i] = input.getChannelPointer (channel + i);
            out[0][i] = lowBlock.getChannelPointer (channel + i);
            out[1][i] = restBlock.getChannelPointer (channel + i);
            out[2][i] = midBlock.getChannelPointer (channel + i);
            out[3][i] = highBlock.getChannelPointer (channel + i);
        }

        isSafe &= simd::kernels().split (coefficients, &states[channel], count, in.data(),
                                         { out[0].data(), out[1].data(), out[2].data(), out[3].data() },
                                         lowBlock.getNumSamples(), largestSafeMagnitude);
    }
}

void ThreeBandSplitter::finishBlock() noexcept
{
    if (! isSafe)
    {
        reset();
        return;
    }

    for (auto& state : states)
    {
        for (auto* section : { &state.lowShared, &state.lowSecond, &state.restSecond, &state.phase,
                               &state.highShared, &state.midSecond, &state.highSecond })
        {
            juce::dsp::util::snapToZero (section->s1);
            juce::dsp::util::snapToZero (section->s2);
        }
    }
}

void ThreeBandSplitter::mergeAll (juce::dsp::AudioBlock<float> output) const
{
    output.copyFrom (lowBlock);
    output.add (midBlock);
    output.add (highBlock);
}

void ThreeBandSplitter::mergeBands (juce::dsp::AudioBlock<float> output, const juce::Array<int>& bands) const
{
    if (bands.isEmpty())
    {
        mergeAll (output);
        return;
    }

    const std::array<const juce::dsp::AudioBlock<float>*, 3> blocks { &lowBlock, &midBlock, &highBlock };

    for (auto i = 0; i < bands.size(); ++i)
    {
        const auto band = bands.getUnchecked (i);

        if (! juce::isPositiveAndBelow (band, static_cast<int> (blocks.size())))
            return;

        if (i == 0)
            output.copyFrom (*blocks[static_cast<size_t> (band)]);
        else
            output.add (*blocks[static_cast<size_t> (band)]);
    }
}
