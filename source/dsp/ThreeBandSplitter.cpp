#include "ThreeBandSplitter.h"

#include "dsp/FiniteCheck.h"

#include <array>

namespace
{
using Filter = juce::dsp::LinkwitzRileyFilter<float>;
using FilterType = juce::dsp::LinkwitzRileyFilterType;

void filterInPlace (Filter& filter, juce::dsp::AudioBlock<float> block)
{
    filter.process (juce::dsp::ProcessContextReplacing<float> (block));
}
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
}

void ThreeBandSplitter::prepare (const juce::dsp::ProcessSpec& spec)
{
    sampleRate = spec.sampleRate;
    forEachFilter ([&] (Filter& filter) { filter.prepare (spec); });

    for (auto* buffer : { &lowBuffer, &midBuffer, &highBuffer, &restBuffer })
        buffer->setSize (static_cast<int> (spec.numChannels), static_cast<int> (spec.maximumBlockSize));

    forEachFilter ([] (Filter& filter) { filter.reset(); });

    // The coefficients depend on the rate, which the filters know only now.
    setFrequencies (lowFrequency, highFrequency);
}

void ThreeBandSplitter::split (const juce::dsp::AudioBlock<const float>& input)
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

    // Mid and high both pass the upper crossover; the all-pass gives the low band the same phase.
    lowBlock.copyFrom (input);
    filterInPlace (lowLowpass, lowBlock);
    filterInPlace (phaseAllpass, lowBlock);

    restBlock.copyFrom (input);
    filterInPlace (lowHighpass, restBlock);

    midBlock.copyFrom (restBlock);
    filterInPlace (highLowpass, midBlock);

    highBlock.copyFrom (restBlock);
    filterInPlace (highHighpass, highBlock);

    resetIfNotFinite (input);
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

void ThreeBandSplitter::resetIfNotFinite (const juce::dsp::AudioBlock<const float>& input)
{
    for (const juce::dsp::AudioBlock<const float>& block :
         { input, juce::dsp::AudioBlock<const float> (lowBlock),
           juce::dsp::AudioBlock<const float> (midBlock), juce::dsp::AudioBlock<const float> (highBlock) })
    {
        if (! isSafelyFinite (block))
        {
            forEachFilter ([] (Filter& filter) { filter.reset(); });
            return;
        }
    }
}
