#pragma once

#include "core/ExpectedParameters.h"
#include "core/OrvoAudioProcessor.h"
#include "support/Signals.h"

#include <functional>
#include <utility>
#include <vector>

/** What a host does when the plug-in tells it of a change. */
struct HostListener final : juce::AudioProcessorListener
{
    using Reaction = std::function<void (const ChangeDetails&)>;

    HostListener (juce::AudioProcessor& p, Reaction r) : processor (p), reaction (std::move (r))
    {
        processor.addListener (this);
    }

    ~HostListener() override { processor.removeListener (this); }

    void audioProcessorParameterChanged (juce::AudioProcessor*, int, float) override {}

    void audioProcessorChanged (juce::AudioProcessor*, const ChangeDetails& details) override
    {
        reaction (details);
    }

    juce::AudioProcessor& processor;
    const Reaction reaction;
};

/** A processor as a host drives it: bus layout, preparation, parameters by ID and real value, audio and state. */
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

    expected::Values values()
    {
        expected::Values all;

        for (const auto& row : expected::parameters())
            all[row.id] = get (row.id);

        return all;
    }

    /** A value of its own for each parameter, none the default. */
    void moveEverything()
    {
        auto place = 0.05;

        for (const auto& row : expected::parameters())
            set (row.id, row.min + (row.max - row.min) * (place += 0.9 / 70.0));
    }

    /** What licensing answers, as shipped but for this change. */
    template <typename Change>
    void setLicence (Change&& change)
    {
        tessarin::LicenceManager::Status status;
        change (status);
        processor.licenceManager.setStatus (status);
    }

    juce::MemoryBlock capture()
    {
        juce::MemoryBlock block;
        processor.getStateInformation (block);
        return block;
    }

    void restore (const juce::MemoryBlock& block)
    {
        processor.setStateInformation (block.getData(), static_cast<int> (block.getSize()));
    }

    /** The texts of the messages since the last call, with bars in between. */
    juce::String takeToasts()
    {
        juce::StringArray texts;

        for (const auto* toast : processor.toastManager.toasts)
            texts.add (toast->text);

        processor.toastManager.toasts.clear();
        return texts.joinIntoString ("|");
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
