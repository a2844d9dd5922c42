#pragma once

#include "dsp/LUFSMeter.h"

#include <juce_audio_basics/juce_audio_basics.h>

/** Sample peak and integrated loudness of a stream of blocks. */
class Measurement
{
public:
    Measurement (double sampleRate, int channels, int maximumBlockSize);

    void add (const juce::AudioBuffer<float>& block, int numFrames);

    [[nodiscard]] float getPeak() const noexcept { return peak; }

    [[nodiscard]] kf::LUFSData getLoudness() const noexcept { return meter.getData(); }

    /** In dBFS, "-inf" for silence. */
    [[nodiscard]] juce::String getPeakText() const;

    /** In LUFS, "-" where there is too little sound to have a loudness. */
    [[nodiscard]] juce::String getLoudnessText() const;

private:
    kf::LUFSMeter meter;
    float peak = 0.0f;
};
