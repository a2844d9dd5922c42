#include "Rows.h"

#include <cmath>
#include <numbers>

namespace bench
{

namespace
{
constexpr auto signalLength = 24576;
static_assert (signalLength % defaultBlockSize == 0, "a block never crosses the signal's end");

juce::AudioBuffer<float> makeSignal()
{
    constexpr auto cyclesPerSample = 997.0 / hostRate;
    constexpr auto sineAmplitude = 1.4;
    constexpr auto noiseAmplitude = 0.1f;

    juce::AudioBuffer<float> buffer (2, signalLength);
    juce::Random random (1);

    for (auto channel = 0; channel < buffer.getNumChannels(); ++channel)
    {
        for (auto i = 0; i < signalLength; ++i)
        {
            // The channels are a quarter of a cycle apart, so that there is a side signal.
            const auto phase = 2.0 * std::numbers::pi * (cyclesPerSample * i + 0.25 * channel);
            const auto noise = noiseAmplitude * (2.0f * random.nextFloat() - 1.0f);
            buffer.setSample (channel, i, static_cast<float> (sineAmplitude * std::sin (phase)) + noise);
        }
    }

    return buffer;
}
} // namespace

const juce::AudioBuffer<float>& signal()
{
    static const auto buffer = makeSignal();
    return buffer;
}

juce::AudioBuffer<float>& Feed::next() noexcept
{
    const auto length = work.getNumSamples();

    if (position + length > signalLength)
        position = 0;

    for (auto channel = 0; channel < work.getNumChannels(); ++channel)
        juce::FloatVectorOperations::copy (work.getWritePointer (channel),
                                           signal().getReadPointer (channel, position), length);

    position += length;
    return work;
}

void addReadings (benchmark::State& state, int blockSize)
{
    using benchmark::Counter;

    // Divided by the time of one iteration; the first one inverted, so that it is time per sample.
    state.counters[nsPerSample] =
        Counter (blockSize * 1.0e-9, Counter::kIsIterationInvariantRate | Counter::kInvert);
    state.counters[timesRealTime] = Counter (blockSize / hostRate, Counter::kIsIterationInvariantRate);
}

} // namespace bench
