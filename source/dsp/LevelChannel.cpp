#include "LevelChannel.h"

#include <cmath>
#include <numeric>

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
    const auto release = [] (float target, float level, float coefficient)
    { return target < level ? target + (level - target) * coefficient : target; };

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

    const auto square = x * x;
    auto& oldest = squares.getReference (rmsIndex);
    rmsSum = rmsSum + square - oldest;
    oldest = square;

    if (++rmsIndex == rmsSamples)
        rmsIndex = 0;

    if (++samplesSinceRecalculation == rmsRecalculateInterval)
    {
        rmsSum = std::accumulate (squares.begin(), squares.end(), 0.0f);
        samplesSinceRecalculation = 0;
    }

    rmsSumSnapshot = rmsSum;

    peakLevel = release (x, peakLevel, peakCoefficient);
    peak = static_cast<double> (peakLevel);
    maxPeak = juce::jmax (maxPeak, peak);
    maxRmsSum = juce::jmax (maxRmsSum, rmsSumSnapshot);
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
