#include "LevelChannel.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{
float release (float target, float level, float coefficient)
{
    return target < level ? target + (level - target) * coefficient : target;
}
} // namespace

void LevelChannel::prepare (double newSampleRate)
{
    const auto rate = static_cast<float> (newSampleRate);

    peakLevel = heldLevel = 0.0f;
    peakReleaseMs = heldReleaseMs = 300.0f;
    peakSampleRate = heldSampleRate = rate;
    peakCoefficient = heldCoefficient = std::exp (-1.0f / (0.3f * rate));

    holdSeconds = 1.0f;
    holdSamples = static_cast<int> (newSampleRate);
    holdCounter = 0;
    holdValue = 0.0f;

    rmsSeconds = 0.3f;
    rmsSamples = juce::jmax (1, static_cast<int> (newSampleRate * static_cast<double> (rmsSeconds)));
    squares.clearQuick();
    squares.insertMultiple (0, 0.0f, rmsSamples);

    rmsRecalculateInterval = static_cast<int> (newSampleRate);
    rmsSum = rmsSumSnapshot = maxRmsSum = 0.0f;
    rmsIndex = samplesSinceRecalculation = 0;

    peak = rms = heldPeak = maxPeak = maxRms = 0.0;
}

void LevelChannel::processSample (float x) noexcept
{
    hold (x);

    const auto square = x * x;
    auto& oldest = squares.getReference (rmsIndex);
    rmsSum = rmsSum + square - oldest;
    oldest = square;
    advance (1);

    peakLevel = release (x, peakLevel, peakCoefficient);
    peak = static_cast<double> (peakLevel);
    maxPeak = juce::jmax (maxPeak, peak);
    maxRmsSum = juce::jmax (maxRmsSum, rmsSumSnapshot);
}

void LevelChannel::hold (float x) noexcept
{
    if (x > holdValue)
    {
        holdValue = x;
        holdCounter = 0;
    }

    if (holdCounter < holdSamples)
    {
        heldLevel = release (holdValue, heldLevel, heldCoefficient);
        ++holdCounter;
    }
    else
    {
        heldLevel = release (x, heldLevel, heldCoefficient);
    }

    holdValue = heldLevel;
    heldPeak = static_cast<double> (heldLevel);
}

void LevelChannel::holdAll (const float* samples, int numSamples, float largest) noexcept
{
    // While a value is held, only a larger one changes anything.
    if (holdCounter + numSamples <= holdSamples && juce::exactlyEqual (holdValue, heldLevel))
    {
        holdCounter += numSamples;

        if (largest > holdValue)
        {
            const auto* first = std::find_if (samples, samples + numSamples,
                                              [largest] (float x) { return std::abs (x) >= largest; });
            holdCounter = static_cast<int> (samples + numSamples - first);
            holdValue = heldLevel = largest;
        }

        heldPeak = static_cast<double> (heldLevel);
        return;
    }

    for (auto i = 0; i < numSamples; ++i)
        hold (std::abs (samples[i]));
}

int LevelChannel::samplesUntilBreak() const noexcept
{
    return juce::jmin (rmsSamples - rmsIndex, rmsRecalculateInterval - samplesSinceRecalculation - 1);
}

void LevelChannel::advance (int numSamples) noexcept
{
    rmsIndex += numSamples;

    if (rmsIndex == rmsSamples)
        rmsIndex = 0;

    samplesSinceRecalculation += numSamples;

    if (samplesSinceRecalculation == rmsRecalculateInterval)
    {
        rmsSum = std::accumulate (squares.begin(), squares.end(), 0.0f);
        samplesSinceRecalculation = 0;
    }

    rmsSumSnapshot = rmsSum;
}

void LevelChannel::discardNonFiniteState() noexcept
{
    if (! std::isfinite (rmsSum))
    {
        squares.fill (0.0f);
        rmsSum = rmsSumSnapshot = 0.0f;
    }

    if (! std::isfinite (peakLevel))
    {
        peakLevel = 0.0f;
        peak = 0.0;
    }

    if (! std::isfinite (heldLevel) || ! std::isfinite (holdValue))
    {
        heldLevel = holdValue = 0.0f;
        heldPeak = 0.0;
    }

    if (! std::isfinite (maxPeak))
        maxPeak = 0.0;

    if (! std::isfinite (maxRmsSum))
        maxRmsSum = 0.0f;
}

LevelData LevelChannel::getData() noexcept
{
    const auto rootMean = [this] (float sum)
    { return sum > 0.0f ? std::sqrt (static_cast<double> (sum) / rmsSamples) : 0.0; };

    rms = rootMean (rmsSumSnapshot);
    maxRms = rootMean (maxRmsSum);

    for (auto* value : { &peak, &heldPeak, &rms, &maxPeak, &maxRms })
        if (*value < 0.0001)
            *value = 0.0;

    return { peak, rms, heldPeak, maxPeak, maxRms };
}

void LevelChannel::resetMaxima() noexcept
{
    maxPeak = 0.0;
    maxRmsSum = 0.0f;
}
