#include "LUFSMeter.h"

#include "dsp/BufferLimits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace kf
{

namespace
{
// ITU-R BS.1770, tables 1 and 2; the prototypes reproduce them at 48 kHz.
constexpr SecondOrderIIRFilter::Coefficients preFilterAt48k { 1.53512485958697, -2.69169618940638,
                                                              1.19839281085285, -1.69065929318241,
                                                              0.73248077421585 };
constexpr SecondOrderIIRFilter::Prototype preFilterPrototype { 0.7071752369554194, 1.5848647011308554,
                                                               1.2587209302325613, 1.000000000000008,
                                                               0.11008497038849221 };
constexpr SecondOrderIIRFilter::Coefficients lowCurveAt48k { 1.0, -2.0, 1.0, -1.99004745483398,
                                                             0.99007225036621 };
constexpr SecondOrderIIRFilter::Prototype lowCurvePrototype { 0.5003270373250421, 1.0049948987146884, 0.0,
                                                              0.0, 0.0024959607321996717 };

constexpr auto absoluteGate = -70.0;
constexpr auto quietestCounted = -100.0;

float toPublishedLoudness (double meanSquare)
{
    return meanSquare > 0.0 ? juce::jmax (noLoudness, static_cast<float> (toLoudness (meanSquare)))
                            : noLoudness;
}

/** 120 dB above full scale. */
constexpr auto largestHarmlessMagnitude = 1.0e6f;

constexpr size_t channelsPerPass = 2;

simd::Biquad coefficientsOf (const SecondOrderIIRFilter& f)
{
    return { f.b0, f.b1, f.b2, f.a1, f.a2 };
}
} // namespace

LUFSMeter::LUFSMeter()
    : bufferForMeasurement (2, 2048),
      preFilter (preFilterAt48k, preFilterPrototype),
      revisedLowFrequencyBCurveFilter (lowCurveAt48k, lowCurvePrototype)
{
    bufferForMeasurement.setSize (2, 512);
    setMeasuringRate (44100.0, 20);
    sizeWindows (2);
}

void LUFSMeter::prepareToPlay (double sampleRate, int numberOfChannels, int estimatedSamplesPerBlock,
                               int expectedRequestRate)
{
    const juce::ScopedLock scope (lock);

    bufferForMeasurement.setSize (numberOfChannels, estimatedSamplesPerBlock);
    preFilter.prepareToPlay (sampleRate, numberOfChannels);
    revisedLowFrequencyBCurveFilter.prepareToPlay (sampleRate, numberOfChannels);

    // A bin must hold a whole number of samples: the first multiple of ten that divides the rate, else ten.
    const auto integerRate = static_cast<int> (sampleRate);
    auto rate = ((expectedRequestRate - 1) / 10 + 1) * 10;

    while (integerRate % rate != 0)
    {
        rate += 10;

        if (rate > integerRate / 2)
        {
            rate = 10;
            break;
        }
    }

    setMeasuringRate (sampleRate, rate);
    sizeWindows (numberOfChannels);
    reset();
}

void LUFSMeter::setMeasuringRate (double sampleRate, int rate)
{
    numberOfBins = 3 * rate;
    numberOfBinsIn400ms = static_cast<int> (rate * 0.4);
    numberOfBinsIn100ms = static_cast<int> (rate * 0.1);
    numberOfSamplesPerBin = juce::jmax (1, static_cast<int> (sampleRate / rate));
    numberOfSamplesIn3s = numberOfSamplesPerBin * numberOfBins;
    numberOfSamplesIn400ms = numberOfSamplesPerBin * numberOfBinsIn400ms;
}

void LUFSMeter::sizeWindows (int numberOfChannels)
{
    const auto channels = static_cast<size_t> (numberOfChannels);

    currentBin = 0;
    samplesInCurrentBin = 0;
    binsSince100ms = 1;
    bins.assign (channels, std::vector<double> (static_cast<size_t> (numberOfBins), 0.0));
    shortTermMeanSquare.assign (channels, 0.0);
    momentaryMeanSquare.assign (channels, 0.0);

    channelWeighting.assign (channels, 1.0);
    for (auto surround : { 3u, 4u })
        if (surround < channels)
            channelWeighting[surround] = 1.41;
}

void LUFSMeter::processBlock (const juce::AudioBuffer<float>& buffer)
{
    const juce::ScopedLock scope (lock);

    currentBlockIsSilent = freezeLoudnessRangeOnSilence && isSilent (buffer);

    // Squares of such a block cannot overflow, and go straight into the bins.
    const auto isHarmless = statesAreHarmless() && isWithin (buffer, largestHarmlessMagnitude);

    if (! isHarmless)
        weighAndSquare (buffer);

    const auto numSamples = buffer.getNumSamples();

    for (auto start = 0; start < numSamples;)
    {
        const auto missing = numberOfSamplesPerBin - samplesInCurrentBin;
        const auto length = juce::jmin (missing, numSamples - start);

        if (isHarmless)
            weighIntoCurrentBin (buffer, start, length);
        else
            addToCurrentBin (start, length);

        start += length;

        if (length < missing)
        {
            samplesInCurrentBin += length;
            return;
        }

        finishBin (buffer.getNumChannels());
    }
}

bool LUFSMeter::statesAreHarmless() const noexcept
{
    constexpr auto largestState = 1.0e12;

    for (const auto* filter : { &preFilter, &revisedLowFrequencyBCurveFilter })
        for (const auto* state : { &filter->z1, &filter->z2 })
            for (auto z : *state)
                if (! (std::abs (z) <= largestState))
                    return false;

    return true;
}

void LUFSMeter::weighIntoCurrentBin (const juce::AudioBuffer<float>& buffer, int start, int length) noexcept
{
    for (size_t channel = 0; channel < numWeighed (buffer); channel += channelsPerPass)
    {
        std::array<double, channelsPerPass> sums {};
        const auto count = juce::jmin (channelsPerPass, numWeighed (buffer) - channel);

        for (size_t i = 0; i < count; ++i)
            sums[i] = bins[channel + i][static_cast<size_t> (currentBin)];

        weigh (buffer, channel, count, start, length, nullptr, sums.data());

        for (size_t i = 0; i < count; ++i)
            bins[channel + i][static_cast<size_t> (currentBin)] = sums[i];
    }
}

/** Into `bufferForMeasurement`, for a block whose squares may be no numbers. */
void LUFSMeter::weighAndSquare (const juce::AudioBuffer<float>& buffer)
{
    auto& measured = bufferForMeasurement;
    measured.setSize (buffer.getNumChannels(), buffer.getNumSamples(), false, false, true);
    measured.clear();
    auto squaresAreFinite = isWithin (buffer, std::numeric_limits<float>::max());

    for (size_t channel = 0; channel < numWeighed (buffer); channel += channelsPerPass)
    {
        // With one channel, the kernel's second one is the same again.
        const auto count = juce::jmin (channelsPerPass, numWeighed (buffer) - channel);
        std::array<double, channelsPerPass> unused {};
        const std::array squares { measured.getWritePointer (static_cast<int> (channel)),
                                   measured.getWritePointer (static_cast<int> (channel + count - 1)) };
        squaresAreFinite &=
            weigh (buffer, channel, count, 0, buffer.getNumSamples(), squares.data(), unused.data());
    }

    // A block that holds no numbers, or whose squares overflow, counts as silence: in the filters' state or
    // in a window's sum it would stay for good.
    if (! squaresAreFinite)
    {
        preFilter.clearState();
        revisedLowFrequencyBCurveFilter.clearState();
        measured.clear();
        currentBlockIsSilent = freezeLoudnessRangeOnSilence;
    }
}

/** One or two channels from `channel` on through both filters. */
bool LUFSMeter::weigh (const juce::AudioBuffer<float>& buffer, size_t channel, size_t count, int start,
                       int length, simd::Channels squares, double* sums) noexcept
{
    const auto state = [&] (const SecondOrderIIRFilter& f) -> simd::BiquadState
    {
        const auto other = channel + count - 1;
        return { { f.z1[channel], f.z1[other] }, { f.z2[channel], f.z2[other] } };
    };

    const auto keep = [&] (SecondOrderIIRFilter& f, const simd::BiquadState& newState)
    {
        for (size_t i = 0; i < count; ++i)
        {
            f.z1[channel + i] = newState.z1[i];
            f.z2[channel + i] = newState.z2[i];
        }
    };

    auto& second = revisedLowFrequencyBCurveFilter;
    simd::Weighting weighting { coefficientsOf (preFilter), coefficientsOf (second), state (preFilter),
                                state (second), SecondOrderIIRFilter::quietest };
    const std::array input { buffer.getReadPointer (static_cast<int> (channel), start),
                             buffer.getReadPointer (static_cast<int> (channel + count - 1), start) };

    const auto isFinite =
        simd::kernels().weighAndSquare (weighting, input.data(), squares, sums, static_cast<size_t> (length));
    keep (preFilter, weighting.firstState);
    keep (second, weighting.secondState);
    return isFinite;
}

void LUFSMeter::addToCurrentBin (int startSample, int numSamples) noexcept
{
    const auto channels =
        juce::jmin (bins.size(), static_cast<size_t> (bufferForMeasurement.getNumChannels()));

    for (size_t channel = 0; channel < channels; ++channel)
    {
        const auto* squares = bufferForMeasurement.getReadPointer (static_cast<int> (channel), startSample);
        auto& bin = bins[channel][static_cast<size_t> (currentBin)];
        bin = std::accumulate (squares, squares + numSamples, bin);
    }
}

void LUFSMeter::finishBin (int numberOfChannels) noexcept
{
    const auto channels = juce::jmin (bins.size(), static_cast<size_t> (numberOfChannels));

    for (size_t channel = 0; channel < channels; ++channel)
        updateWindows (channel);

    if (binsSince100ms == numberOfBinsIn100ms)
    {
        ++blocksMeasured;
        binsSince100ms = 1;
        measureIntegratedLoudness();
        measureLoudnessRange();
    }
    else
    {
        ++binsSince100ms;
    }

    currentBin = (currentBin + 1) % numberOfBins;
    samplesInCurrentBin = 0;

    for (auto& ring : bins)
        ring[static_cast<size_t> (currentBin)] = 0.0;
}

/** Runs once per channel, so the first channel's pass sums the other channels' values of the bin before, and
    the maxima see that too. Readings depend on this order. */
void LUFSMeter::updateWindows (size_t channel) noexcept
{
    const auto& ring = bins[channel];

    shortTermMeanSquare[channel] = std::accumulate (ring.begin(), ring.end(), 0.0) / numberOfSamplesIn3s;
    shortTermLoudness = toPublishedLoudness (weightedSum (shortTermMeanSquare));
    maxShortTermLoudness = juce::jmax (maxShortTermLoudness, shortTermLoudness);

    auto sum = 0.0;
    for (auto back = 0, bin = currentBin; back < numberOfBinsIn400ms; ++back)
    {
        sum += ring[static_cast<size_t> (bin)];
        bin = bin == 0 ? numberOfBins - 1 : bin - 1;
    }

    momentaryMeanSquare[channel] = sum / numberOfSamplesIn400ms;
    momentaryLoudness = toPublishedLoudness (weightedSum (momentaryMeanSquare));
    maxMomentaryLoudness = juce::jmax (maxMomentaryLoudness, momentaryLoudness);
}

void LUFSMeter::measureIntegratedLoudness() noexcept
{
    const auto meanSquare = weightedSum (momentaryMeanSquare);
    const auto loudness = toLoudness (meanSquare);

    if (loudness > absoluteGate)
    {
        gatedBlockSum += meanSquare;
        ++gatedBlockCount;
        relativeGate = toLoudness (gatedBlockSum / gatedBlockCount) - 10.0;
    }

    if (loudness > quietestCounted)
        blockHistogram.add (toKey (loudness));

    if (isAboveGate (blockHistogram, relativeGate))
        integratedLoudness = gatedLoudness (blockHistogram, relativeGate);
}

void LUFSMeter::measureLoudnessRange() noexcept
{
    constexpr auto blocksIn3s = 30;

    const auto meanSquare = weightedSum (shortTermMeanSquare);
    const auto loudness = toLoudness (meanSquare);

    if (loudness > absoluteGate)
    {
        rangeBlockSum += meanSquare;
        ++rangeBlockCount;
        rangeRelativeGate = toLoudness (rangeBlockSum / rangeBlockCount) - 20.0;
    }

    if (! currentBlockIsSilent)
        ++nonSilentBlocks;

    if (loudness > quietestCounted && nonSilentBlocks >= blocksIn3s)
        rangeHistogram.add (toKey (loudness));

    if (! isAboveGate (rangeHistogram, rangeRelativeGate)
        || (freezeLoudnessRangeOnSilence && currentBlockIsSilent))
        return;

    const auto range = gatedRange (rangeHistogram, rangeRelativeGate);
    loudnessRangeStart = range.start;
    loudnessRangeEnd = range.end;
}

double LUFSMeter::weightedSum (const std::vector<double>& meanSquares) const noexcept
{
    return std::inner_product (meanSquares.begin(), meanSquares.end(), channelWeighting.begin(), 0.0);
}

void LUFSMeter::reset()
{
    const juce::ScopedLock scope (lock);

    for (auto& ring : bins)
        std::fill (ring.begin(), ring.end(), 0.0);

    std::fill (shortTermMeanSquare.begin(), shortTermMeanSquare.end(), 0.0);
    std::fill (momentaryMeanSquare.begin(), momentaryMeanSquare.end(), 0.0);

    blocksMeasured = 0;
    nonSilentBlocks = 0;
    binsSince100ms = 1;
    gatedBlockCount = 0;
    gatedBlockSum = 0.0;
    rangeBlockCount = 0;
    rangeBlockSum = 0.0;
    relativeGate = absoluteGate;
    rangeRelativeGate = absoluteGate;
    blockHistogram.clear();
    rangeHistogram.clear();

    for (auto* value : { &integratedLoudness, &loudnessRangeStart, &loudnessRangeEnd, &shortTermLoudness,
                         &maxShortTermLoudness, &momentaryLoudness, &maxMomentaryLoudness })
        *value = noLoudness;
}

LUFSData LUFSMeter::getData() const noexcept
{
    constexpr auto longEnoughInSeconds = 60.0;
    const juce::ScopedLock scope (lock);

    return { shortTermLoudness,
             maxShortTermLoudness,
             momentaryLoudness,
             maxMomentaryLoudness,
             integratedLoudness,
             loudnessRangeStart,
             loudnessRangeEnd,
             loudnessRangeEnd - loudnessRangeStart,
             blocksMeasured * 0.1 > longEnoughInSeconds };
}

} // namespace kf
