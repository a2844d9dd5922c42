#include "Measurement.h"

#include <cmath>

Measurement::Measurement (double sampleRate, int channels, int maximumBlockSize)
{
    meter.prepareToPlay (sampleRate, channels, maximumBlockSize, 30);
}

void Measurement::add (const juce::AudioBuffer<float>& block, int numFrames)
{
    if (numFrames == 0)
        return;

    // A view of the frames that count; AudioBuffer has no const one.
    const juce::AudioBuffer<float> frames (const_cast<float* const*> (block.getArrayOfReadPointers()),
                                           block.getNumChannels(), numFrames);

    meter.processBlock (frames);
    peak = juce::jmax (peak, frames.getMagnitude (0, numFrames));
}

juce::String Measurement::getPeakText() const
{
    return peak > 0.0f ? juce::String (20.0 * std::log10 (static_cast<double> (peak)), 2) : "-inf";
}

juce::String Measurement::getLoudnessText() const
{
    const auto loudness = meter.getData().integrated;
    return loudness > kf::noLoudness ? juce::String (loudness, 1) : "-";
}
