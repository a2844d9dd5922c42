#include "OrvoAudioProcessor.h"

#include "common/ColourIds.h"
#include "common/ParameterIds.h"

namespace
{
constexpr auto defaultEditorWidth = 1068;
constexpr auto defaultEditorHeight = 800;

juce::StringArray getModeNames (const MultiModeClipper& clipper)
{
    juce::StringArray names;

    for (const auto& mode : clipper.modes)
        names.add (mode.name);

    return names;
}
} // namespace

//======================================================================================================================
// Life

OrvoAudioProcessor::OrvoAudioProcessor()
    : TessarinProcessor (BusesProperties()
                             .withInput ("Input", juce::AudioChannelSet::stereo(), true)
                             .withOutput ("Output", juce::AudioChannelSet::stereo(), true)),
      oversamplers (makeJuceOversamplers (2)),
      values (*this, getModeNames (singleClipper))
{
    waveformTaps.addTap (0.0f, luna::ColourIds::primaryColourId, WaveformTap::filledBars);
    waveformTaps.addTap (100.0f, luna::ColourIds::textColourId, WaveformTap::line);

    buildSectionTable();
    captureInitialState();

    if (! presetManager.hasFactoryPresets)
        toastManager.showError ("No factory presets found! Please reinstall the plugin.");

    for (auto* parameter : getParameters())
    {
        const auto& id = static_cast<juce::RangedAudioParameter*> (parameter)->getParameterID();
        parameterChanged (id, parameters.getRawParameterValue (id)->load());
    }

    editorWidth = defaultEditorWidth;
    editorHeight = defaultEditorHeight;
}

OrvoAudioProcessor::~OrvoAudioProcessor()
{
    removeParameterListeners();
}

SignalChain::Parts OrvoAudioProcessor::getChainParts()
{
    return { { &lowBandClipper, &midBandClipper, &highBandClipper, &midChannelClipper, &sideChannelClipper,
               &leftChannelClipper, &rightChannelClipper, &singleClipper, &postClipper },
             splitter,
             midBuffer,
             sideBuffer,
             midBlock,
             sideBlock,
             ceiling };
}

ChainMeasurements::Parts OrvoAudioProcessor::getMeasuredParts()
{
    return { waveformTaps,        spectrum,       levels,         inputLoudnessMeter,
             outputLoudnessMeter, inputLoudness,  outputLoudness, shortTermDifference,
             peakDifference,      inputMaxPeakDb, outputMaxPeakDb };
}

void OrvoAudioProcessor::buildSectionTable()
{
    const auto clippers = getChainParts().sections;

    for (size_t row = 0; row < numSections; ++row)
        sections.add ({ sectionTable[row].name, sectionTable[row].id, clippers[row] });
}

//======================================================================================================================
// Preparation

int OrvoAudioProcessor::getNumInputChannels() const
{
    return getBusCount (true) > 0 ? getChannelCountOfBus (true, 0) : 0;
}

void OrvoAudioProcessor::prepareToPlay (double newSampleRate, int maximumExpectedSamplesPerBlock)
{
    const juce::ScopedLock scope (processLock);

    const auto numChannels = getNumInputChannels();
    blockSize = juce::jmax (1, maximumExpectedSamplesPerBlock);
    sampleRate = newSampleRate;
    measurements.prepare (sampleRate, blockSize, numChannels);

    {
        const juce::ScopedLock oversamplerScope (oversamplerLock);
        oversamplers = makeJuceOversamplers (numChannels);
        oversamplingSampleRate = sampleRate;

        for (auto* oversampler : oversamplers)
            oversampler->initProcessing (static_cast<size_t> (blockSize));

        chain.prepare (sampleRate, blockSize, numChannels);
    }

    needsPrepare = false;
    prepareChain();
}

void OrvoAudioProcessor::prepareChain()
{
    auto latency = 0;

    {
        const juce::ScopedLock scope (processLock);
        chain.setFactor (oversamplingIndex);
        latency = static_cast<int> (oversamplers[oversamplingIndex]->getLatencyInSamples());
    }

    // Tells the host, if the latency differs.
    setLatencySamples (latency);
}

//======================================================================================================================
// Parameter changes

void OrvoAudioProcessor::parameterChanged (const juce::String& parameterID, float newValue)
{
    const juce::ScopedLock scope (processLock);
    values.applyChange (parameterID, newValue, getChainParts());

    if (parameterID == ParameterIds::layout)
    {
        layout = roundToChoice (newValue);
        waveformTaps.clear();
    }

    if (parameterID == ParameterIds::oversampling)
    {
        const juce::ScopedLock oversamplerScope (oversamplerLock);
        oversamplingIndex = values.oversampling.get();
        needsPrepare = true;
    }

    // Every change restarts the maximum peaks and the loudness.
    resetMeasurements();
}

void OrvoAudioProcessor::resetMeasurements()
{
    // A click on a readout comes here, too, and a block that runs would write the old maxima back.
    const juce::ScopedLock scope (processLock);
    measurements.reset();
}

//======================================================================================================================
// The block

void OrvoAudioProcessor::processAudio (juce::AudioBuffer<float>& buffer)
{
    for (;;)
    {
        if (needsPrepare.exchange (false))
            prepareChain();

        const juce::ScopedLock scope (processLock);

        // Another change may have come before the lock was taken: the buffers would be too small for its
        // factor.
        if (! needsPrepare)
        {
            processLocked (buffer);
            return;
        }
    }
}

void OrvoAudioProcessor::processLocked (juce::AudioBuffer<float>& buffer)
{
    const auto isPrepared = oversamplingSampleRate > 0.0;

    if (! isPrepared || ! values.enable.get())
        return;

    // A host that breaks its promise about the block size still gets the right audio.
    const auto numSamples = buffer.getNumSamples();
    auto start = 0;

    do
    {
        juce::AudioBuffer<float> part (buffer.getArrayOfWritePointers(), buffer.getNumChannels(), start,
                                       juce::jmin (blockSize, numSamples - start));
        processPart (part);
        start += blockSize;
    } while (start < numSamples);
}

void OrvoAudioProcessor::processPart (juce::AudioBuffer<float>& buffer)
{
    measurements.measureInput (buffer, layout == Layout::multiBand);

    {
        const juce::ScopedLock scope (oversamplerLock);
        chain.process (juce::dsp::AudioBlock<float> (buffer), values.getSettings (layout));
    }

    measurements.measureOutput (buffer);
}
