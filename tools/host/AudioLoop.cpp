#include "AudioLoop.h"

#include "Arguments.h"
#include "AudioFile.h"
#include "Failure.h"

#include <chrono>
#include <cmath>
#include <thread>
#include <utility>

namespace
{
/** Two seconds with something in every band: a bass drum on each half, a chord to its right and left, and
    short noise between. Peaks near full scale. */
AudioLoop::Clip makeTestSignal()
{
    AudioLoop::Clip clip;
    const auto rate = clip.sampleRate;
    clip.audio.setSize (2, juce::roundToInt (2.0 * rate));
    juce::Random random (3);

    for (auto i = 0; i < clip.audio.getNumSamples(); ++i)
    {
        const auto time = i / rate;
        const auto beat = std::fmod (time, 0.5), offBeat = std::fmod (time + 0.25, 0.5);
        const auto drum =
            0.6 * std::exp (-7.0 * beat)
            * std::sin (juce::MathConstants<double>::twoPi * (55.0 * beat + 1.5 * std::exp (-40.0 * beat)));
        const auto noise = 0.25 * std::exp (-40.0 * offBeat) * (2.0 * random.nextDouble() - 1.0);

        for (auto channel = 0; channel < 2; ++channel)
        {
            auto chord = 0.0;
            for (const auto frequency : { 220.0, 277.0 + channel, 330.0, 1760.0 - 3.0 * channel })
                chord += 0.06 * std::sin (juce::MathConstants<double>::twoPi * frequency * time);

            clip.audio.setSample (channel, i, static_cast<float> (drum + noise + chord));
        }
    }

    return clip;
}
} // namespace

AudioLoop::Clip AudioLoop::loadClip (const juce::String& fileName)
{
    if (fileName.isEmpty())
        return makeTestSignal();

    const auto file = fileFromOperand (fileName);
    AudioFileReader reader (file);
    const auto& shape = reader.getShape();

    if (shape.frames < 1 || static_cast<double> (shape.frames) > 1800.0 * shape.sampleRate)
        throw Failure (file.getFullPathName() + ": a file of up to half an hour can be repeated");

    Clip clip { juce::AudioBuffer<float> (shape.channels, static_cast<int> (shape.frames)),
                shape.sampleRate };
    reader.read (clip.audio, 0);
    return clip;
}

AudioLoop::AudioLoop (PluginHost& h, Clip c) : Thread ("audio"), host (h), clip (std::move (c))
{
    host.setChannels (clip.audio.getNumChannels());
    host.prepare (clip.sampleRate, blockSize);
}

AudioLoop::~AudioLoop()
{
    stop();
}

void AudioLoop::start()
{
    startThread (Priority::high);
}

void AudioLoop::stop()
{
    stopThread (-1);
}

void AudioLoop::fill (juce::AudioBuffer<float>& block, juce::int64 firstFrame) const
{
    const auto frames = clip.audio.getNumSamples();

    for (auto filled = 0; filled < block.getNumSamples();)
    {
        const auto position = static_cast<int> ((firstFrame + filled) % frames);
        const auto length = juce::jmin (block.getNumSamples() - filled, frames - position);

        for (auto channel = 0; channel < block.getNumChannels(); ++channel)
            block.copyFrom (channel, filled, clip.audio, channel, position, length);

        filled += length;
    }
}

void AudioLoop::setParameters (juce::int64 block)
{
    auto step = block;

    for (auto& parameter : host.getParameters())
        for (const auto* name : { "layout", "enable", "mode_", "link_", "crossover_", "solo_band" })
            if (! parameter.isAddedByWrapper() && parameter.getId().startsWith (name))
                parameter.setValue (static_cast<float> (step++ % 13) / 12.0f);
}

void AudioLoop::sweep (std::vector<HostedParameter*> parameters)
{
    const std::lock_guard lock (sweptLock);
    swept = std::move (parameters);
}

std::vector<double> AudioLoop::takeBlockTimes()
{
    const std::lock_guard lock (timesLock);
    return std::exchange (blockTimes, {});
}

void AudioLoop::process (juce::AudioBuffer<float>& block)
{
    constexpr size_t mostTimes = 1 << 20;
    const auto begin = std::chrono::steady_clock::now();
    host.process (block);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;

    const std::lock_guard lock (timesLock);
    if (blockTimes.size() < mostTimes)
        blockTimes.push_back (time.count());
}

void AudioLoop::sweepParameters()
{
    const auto value = static_cast<float> (std::abs (std::fmod (getSecondsPlayed(), 2.0) - 1.0));
    const std::lock_guard lock (sweptLock);

    for (auto* parameter : swept)
        parameter->setValue (value);
}

void AudioLoop::run()
{
    using Clock = std::chrono::steady_clock;

    juce::AudioBuffer<float> block (clip.audio.getNumChannels(), blockSize);
    const auto period = std::chrono::duration_cast<Clock::duration> (
        std::chrono::duration<double> (blockSize / clip.sampleRate));

    for (auto due = Clock::now(); ! threadShouldExit();)
    {
        const auto begin = Clock::now();

        if (isAutomating)
            setParameters (framesPlayed / blockSize);

        sweepParameters();
        fill (block, framesPlayed);
        process (block);
        framesPlayed += blockSize;

        // A busy machine makes the audio late, not faster afterwards.
        const auto end = Clock::now();
        due = std::max (due + period, end - period);
        std::this_thread::sleep_until (isAutomating ? end + 3 * (end - begin) : due);
    }
}
