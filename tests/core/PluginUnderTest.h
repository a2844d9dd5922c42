#pragma once

#include "core/ExpectedParameters.h"
#include "core/OrvoAudioProcessor.h"
#include "support/Signals.h"

#include <vector>

/** A processor as a host sets it up: bus layout, preparation, parameters by ID and real value. */
struct PluginUnderTest
{
    explicit PluginUnderTest (int numChannels = 2, double sampleRate = 48000.0, int maximumBlockSize = 512)
    {
        prepare (numChannels, sampleRate, maximumBlockSize);
    }

    void prepare (int numChannels, double sampleRate, int maximumBlockSize)
    {
        const auto set = juce::AudioChannelSet::canonicalChannelSet (numChannels);
        processor.setBusesLayout ({ { set }, { set } });
        processor.setRateAndBufferSizeDetails (sampleRate, maximumBlockSize);
        processor.prepareToPlay (sampleRate, maximumBlockSize);
    }

    juce::RangedAudioParameter& parameter (const juce::String& id)
    {
        return *processor.parameters.getParameter (id);
    }

    void set (const juce::String& id, double value)
    {
        auto& target = parameter (id);
        target.setValueNotifyingHost (target.convertTo0to1 (static_cast<float> (value)));
    }

    /** From the last ID to the first: a mode comes behind the settings that it takes over. */
    void set (const expected::Values& values)
    {
        for (auto entry = values.rbegin(); entry != values.rend(); ++entry)
            set (juce::String (entry->first), entry->second);
    }

    double get (const juce::String& id)
    {
        return static_cast<double> (processor.parameters.getRawParameterValue (id)->load());
    }

    void process (juce::AudioBuffer<float>& block) { processor.processBlock (block, midi); }

    /** In blocks of the given lengths, over and over. */
    juce::AudioBuffer<float> render (juce::AudioBuffer<float> signal,
                                     const std::vector<int>& lengths = { 512 })
    {
        signals::inBlocks (signal, lengths, [this] (auto& block) { process (block); });
        return signal;
    }

    OrvoAudioProcessor processor;
    juce::MidiBuffer midi;
};
