#pragma once

#include "support/Signals.h"

#include <juce_audio_formats/juce_audio_formats.h>

#include <algorithm>

/** Music for presets: a small band made of one recording, so that each frequency band, the sides and both
    channels have work. */
namespace recordedMusic
{
using signals::Buffer;

constexpr auto sampleRate = 44100.0;
constexpr auto length = 66150;

struct Player
{
    /** In parts of the recording's length. */
    double start;

    double speed;
    float leftGain, rightGain;
};

/** A bass three octaves down, a guitar on either side, and a bright part two octaves up. */
constexpr Player players[] {
    { 0.32, 0.1, 0.7f, 0.7f }, { 0.3, 1.0, 0.8f, 0.0f }, { 0.05, 1.0, 0.0f, 0.8f }, { 0.05, 4.0, 0.6f, 0.6f }
};

/** Brings the level that one sample in a thousand exceeds to `target`. */
inline void normalise (Buffer& buffer, double target)
{
    std::vector<float> levels;

    for (auto channel = 0; channel < buffer.getNumChannels(); ++channel)
        for (auto i = 0; i < buffer.getNumSamples(); ++i)
            levels.push_back (std::abs (buffer.getSample (channel, i)));

    const auto loud = levels.end() - static_cast<int> (levels.size() / 1000);
    std::nth_element (levels.begin(), loud, levels.end());
    buffer.applyGain (static_cast<float> (target) / *loud);
}

/** Music whose loudest thousandth of the samples exceeds `levelDb`. */
inline Buffer make (double levelDb)
{
    const juce::File file (ORVO_RECORDING);
    const std::unique_ptr<juce::AudioFormatReader> reader (
        juce::WavAudioFormat().createReaderFor (file.createInputStream().release(), true));
    Buffer recording (1, static_cast<int> (reader->lengthInSamples));
    reader->read (&recording, 0, recording.getNumSamples(), 0, true, false);
    auto music = signals::silence (2, length);

    for (const auto& [start, speed, leftGain, rightGain] : players)
    {
        Buffer part (1, length);
        const auto first = static_cast<int> (start * recording.getNumSamples());
        juce::LagrangeInterpolator().process (speed, recording.getReadPointer (0, first),
                                              part.getWritePointer (0), length,
                                              recording.getNumSamples() - first, 0);
        normalise (part, 1.0);
        music.addFrom (0, 0, part, 0, 0, length, leftGain);
        music.addFrom (1, 0, part, 0, 0, length, rightGain);
    }

    normalise (music, signals::toGain (levelDb));
    return music;
}

struct Levels
{
    double getCrest() const { return peakDb - rmsDb; }

    double peakDb, rmsDb;
};

inline Levels measure (const Buffer& buffer, double gain = 1.0)
{
    auto sum = 0.0;

    for (auto channel = 0; channel < buffer.getNumChannels(); ++channel)
        sum += std::pow (static_cast<double> (buffer.getRMSLevel (channel, 0, buffer.getNumSamples())), 2.0);

    return { signals::toDb (gain * static_cast<double> (buffer.getMagnitude (0, buffer.getNumSamples()))),
             signals::toDb (gain * std::sqrt (sum / buffer.getNumChannels())) };
}
} // namespace recordedMusic
