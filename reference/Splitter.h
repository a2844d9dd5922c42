#pragma once

#include <juce_dsp/juce_dsp.h>

namespace reference
{
/** The crossover out of five of JUCE's filters, one after the other over copies of the block. */
class Splitter
{
public:
    using Filter = juce::dsp::LinkwitzRileyFilter<float>;
    using Type = juce::dsp::LinkwitzRileyFilterType;
    using Block = juce::dsp::AudioBlock<float>;

    void prepare (const juce::dsp::ProcessSpec& spec)
    {
        for (auto* filter : { &lowLowpass, &lowHighpass, &highLowpass, &highHighpass, &phaseAllpass })
            filter->prepare (spec);

        for (auto* buffer : { &low, &mid, &high, &rest })
            buffer->setSize (static_cast<int> (spec.numChannels), static_cast<int> (spec.maximumBlockSize));
    }

    void setFrequencies (float lowFrequency, float highFrequency)
    {
        set (lowLowpass, Type::lowpass, lowFrequency);
        set (lowHighpass, Type::highpass, lowFrequency);
        set (highLowpass, Type::lowpass, highFrequency);
        set (highHighpass, Type::highpass, highFrequency);
        set (phaseAllpass, Type::allpass, highFrequency);
    }

    void split (const juce::dsp::AudioBlock<const float>& input)
    {
        const auto view = [&] (juce::AudioBuffer<float>& buffer)
        { return Block (buffer).getSubBlock (0, input.getNumSamples()); };

        lowBlock = view (low);
        midBlock = view (mid);
        highBlock = view (high);
        auto restBlock = view (rest);

        run (lowLowpass, lowBlock, input);
        run (phaseAllpass, lowBlock, lowBlock);
        run (lowHighpass, restBlock, input);
        run (highLowpass, midBlock, restBlock);
        run (highHighpass, highBlock, restBlock);
    }

    void mergeAll (Block output) const
    {
        output.copyFrom (lowBlock);
        output.add (midBlock);
        output.add (highBlock);
    }

    juce::AudioBuffer<float> low, mid, high, rest;
    Block lowBlock, midBlock, highBlock;

private:
    static void set (Filter& filter, Type type, float cutoff)
    {
        filter.setType (type);
        filter.setCutoffFrequency (cutoff);
    }

    static void run (Filter& filter, Block& target, const juce::dsp::AudioBlock<const float>& source)
    {
        if (target.getChannelPointer (0) != source.getChannelPointer (0))
            target.copyFrom (source);

        filter.process (juce::dsp::ProcessContextReplacing<float> (target));
    }

    Filter lowLowpass, lowHighpass, highLowpass, highHighpass, phaseAllpass;
};
} // namespace reference
