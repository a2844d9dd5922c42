#include "ChainMeasurements.h"

#include "common/Decibels.h"

namespace
{
/** How often per second the editor reads the loudness. */
constexpr auto loudnessRequestRate = 30;

juce::dsp::AudioBlock<const float> asBlock (const juce::AudioBuffer<float>& buffer)
{
    return juce::dsp::AudioBlock<const float> (buffer);
}
} // namespace

void ChainMeasurements::prepare (double sampleRate, int maximumBlockSize, int numChannels)
{
    parts.spectrum.prepare (sampleRate);
    parts.levels.prepare (sampleRate);

    for (auto* meter : { &parts.inputLoudnessMeter, &parts.outputLoudnessMeter })
        meter->prepareToPlay (sampleRate, numChannels, maximumBlockSize, loudnessRequestRate);

    parts.inputLoudness = parts.inputLoudnessMeter.getData();
    parts.outputLoudness = parts.outputLoudnessMeter.getData();
    parts.waveformTaps.prepare (sampleRate);
}

void ChainMeasurements::measureInput (const juce::AudioBuffer<float>& buffer, bool withSpectrum)
{
    parts.inputLoudnessMeter.processBlock (buffer);
    parts.inputLoudness = parts.inputLoudnessMeter.getData();
    parts.levels.input.process (asBlock (buffer));
    parts.waveformTaps.push (0, buffer.getNumChannels(), buffer.getArrayOfReadPointers(), 0,
                             buffer.getNumSamples());

    if (withSpectrum && buffer.getNumChannels() > 0)
        feedSpectrum (buffer);
}

void ChainMeasurements::measureOutput (const juce::AudioBuffer<float>& buffer)
{
    parts.levels.output.process (asBlock (buffer));
    parts.waveformTaps.push (1, buffer.getNumChannels(), buffer.getArrayOfReadPointers(), 0,
                             buffer.getNumSamples());
    parts.outputLoudnessMeter.processBlock (buffer);
    parts.outputLoudness = parts.outputLoudnessMeter.getData();
    publish();
}

void ChainMeasurements::feedSpectrum (const juce::AudioBuffer<float>& buffer)
{
    const juce::ScopedLock scope (parts.spectrum.lock);
    const auto numChannels = buffer.getNumChannels();

    for (auto i = 0; i < buffer.getNumSamples(); ++i)
    {
        auto sum = 0.0f;

        for (auto channel = 0; channel < numChannels; ++channel)
            sum += buffer.getReadPointer (channel)[i];

        parts.spectrum.pushSample (sum / static_cast<float> (numChannels));
    }
}

void ChainMeasurements::publish()
{
    const auto maxPeakDb = [] (luna::temp::StereoLevelProcessor& pair)
    { return decibels::fromGain (static_cast<float> (pair.getMaxPeak())); };

    parts.shortTermDifference = parts.outputLoudness.shortTerm - parts.inputLoudness.shortTerm;
    parts.inputMaxPeakDb = maxPeakDb (parts.levels.input);
    parts.outputMaxPeakDb = maxPeakDb (parts.levels.output);
    parts.peakDifference = parts.outputMaxPeakDb - parts.inputMaxPeakDb;
}

void ChainMeasurements::reset()
{
    parts.levels.resetMaxima();
    parts.inputLoudnessMeter.reset();
    parts.outputLoudnessMeter.reset();

    // What publish() says of empty meters.
    parts.inputLoudness = parts.outputLoudness = {};
    parts.shortTermDifference = parts.peakDifference = 0.0f;
    parts.inputMaxPeakDb = parts.outputMaxPeakDb = decibels::floorDb;
}
