#include "WaveformHistory.h"

#include "common/Decibels.h"

#include <cmath>
#include <limits>

namespace
{
constexpr auto emptyValue = -std::numeric_limits<float>::infinity();
}

void WaveformTap::prepare (double newSampleRate)
{
    seconds = 5.0f;
    sampleRate = newSampleRate;

    // Nothing to lay out before a graph has said how wide it is.
    if (points == 0)
        return;

    samplesPerPoint = static_cast<int> (sampleRate * static_cast<double> (seconds) / points);

    const auto pointsPerSecond = sampleRate / juce::jmax (1, samplesPerPoint);
    smoothingCoefficient = static_cast<float> (
        std::pow (0.01, 1.0 / (static_cast<double> (releaseMs) * 0.001 * pointsPerSecond)));
}

void WaveformTap::clear() noexcept
{
    values.fill (emptyValue);
    writeIndex = samplesInPoint = 0;
    pointMaximum = smoothed = 0.0f;
}

void WaveformTap::pushMagnitude (float magnitude) noexcept
{
    // An infinite magnitude would stay in the release for good; NaN fails both tests too.
    if (magnitude > pointMaximum && magnitude <= std::numeric_limits<float>::max())
        pointMaximum = magnitude;

    if (++samplesInPoint < samplesPerPoint)
        return;

    auto value = pointMaximum;

    if (smoothingEnabled)
    {
        if (value < smoothed)
            value += (smoothed - value) * smoothingCoefficient;

        smoothed = value;
    }

    values.setUnchecked (writeIndex, decibels::fromGain (value));

    if (++writeIndex == points)
        writeIndex = 0;

    samplesInPoint = 0;
    pointMaximum = 0.0f;
}

void WaveformHistory::addTap (float releaseMs, int colourId, int style)
{
    WaveformTap tap;
    tap.colourId = colourId;
    tap.style = style;
    tap.releaseMs = releaseMs;
    tap.smoothingEnabled = releaseMs > 0.0f;

    const juce::ScopedLock scope (lock);
    taps.add (tap);
}

void WaveformHistory::prepare (double sampleRate)
{
    const juce::ScopedLock scope (lock);

    for (auto& tap : taps)
        tap.prepare (sampleRate);
}

void WaveformHistory::setPoints (int points)
{
    const juce::ScopedLock scope (lock);

    for (auto& tap : taps)
    {
        if (tap.points != points)
        {
            tap.points = points;
            tap.values.resize (points);
            tap.clear();
        }

        tap.prepare (tap.sampleRate);
    }

    ++changeCount;
}

void WaveformHistory::clear()
{
    const juce::ScopedLock scope (lock);

    for (auto& tap : taps)
        tap.clear();

    ++changeCount;
}

void WaveformHistory::push (int tap, int numChannels, const float* const* channels, int startSample,
                            int numSamples)
{
    const juce::ScopedLock scope (lock);
    auto& target = taps.getReference (tap);

    if (target.points == 0 || numChannels == 0)
        return;

    const auto* first = channels[0] + startSample;
    const auto* second = channels[numChannels > 1 ? 1 : 0] + startSample;

    for (auto i = 0; i < numSamples; ++i)
        target.pushMagnitude (juce::jmax (std::abs (first[i]), std::abs (second[i])));

    ++changeCount;
}
