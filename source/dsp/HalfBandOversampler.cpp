#include "HalfBandOversampler.h"

#include "common/Sections.h"

#include <array>
#include <cmath>

namespace
{
constexpr size_t numStages = Oversampling::largestExponent;

/** One direction of one stage. */
struct Filter
{
    Filter (float transitionWidth, float stopbandDb)
    {
        using Design = juce::dsp::FilterDesign<float>;
        const auto designed = Design::designFIRLowpassHalfBandEquirippleMethod (transitionWidth, stopbandDb);
        const auto* coefficients = designed->getRawCoefficients();
        order = designed->getFilterOrder();

        for (size_t i = 0; i < order / 2; i += 2)
            taps.push_back (coefficients[i]);

        centre = coefficients[order / 2];

        // Else the middle would lie on one of the zeros.
        jassert (order == 4 * taps.size() - 2);
    }

    simd::HalfBand view() const noexcept { return { taps.data(), taps.size(), centre }; }

    size_t order = 0;
    std::vector<float> taps;
    float centre = 0.0f;
};

struct Stage
{
    Filter up, down;
};

/** Designed once for all instances; the design takes milliseconds. */
const std::array<Stage, numStages>& stages()
{
    static const std::array<Stage, numStages> designed { Stage { { 0.05f, -90.0f }, { 0.06f, -75.0f } },
                                                         Stage { { 0.10f, -80.0f }, { 0.12f, -65.0f } },
                                                         Stage { { 0.10f, -70.0f }, { 0.12f, -55.0f } },
                                                         Stage { { 0.10f, -60.0f }, { 0.12f, -45.0f } } };
    return designed;
}

/** What is missing to a whole number of samples, between 0.618 and 1.618; 0 if nothing is. In the order of
    JUCE's sums. */
float fractionalDelay (size_t exponent)
{
    auto latency = 0.0f;
    auto factor = 1.0f;

    for (size_t n = 0; n < exponent; ++n)
    {
        factor *= 2.0f;
        latency += static_cast<float> (stages()[n].up.order + stages()[n].down.order) * 0.5f / factor;
    }

    const auto missing = 1.0f - (latency - std::floor (latency));

    if (juce::approximatelyEqual (missing, 1.0f))
        return 0.0f;

    return missing < 0.618f ? missing + 1.0f : missing;
}
} // namespace

HalfBandOversampler::HalfBandOversampler (size_t numChannels, size_t exponentToUse)
    : exponent (exponentToUse), lines (numChannels), delays (numChannels)
{
    jassert (exponent <= numStages);

    for (auto& channel : lines)
    {
        for (size_t n = 0; n < exponent; ++n)
        {
            const auto room = [] (size_t state)
            { return state + simd::halfBandChunk + simd::halfBandPadding; };
            const auto numUp = stages()[n].up.taps.size(), numDown = stages()[n].down.taps.size();
            channel.push_back ({ std::vector<float> (room (2 * numUp)),
                                 std::vector<float> (room (2 * numDown)),
                                 std::vector<float> (room (numDown)) });
        }
    }

    for (auto& buffer : between)
        buffer.resize (longestPart << exponent);

    if (const auto samples = fractionalDelay (exponent); samples > 0.0f)
    {
        isDelayed = true;
        allpass = (1.0f - samples) / (1.0f + samples);
    }
}

void HalfBandOversampler::reset() noexcept
{
    for (auto& channel : lines)
        for (auto& line : channel)
            for (auto* samples : { &line.up, &line.downEven, &line.downOdd })
                std::fill (samples->begin(), samples->end(), 0.0f);

    std::fill (delays.begin(), delays.end(), Delay {});
}

void HalfBandOversampler::processUp (const juce::dsp::AudioBlock<const float>& input,
                                     juce::dsp::AudioBlock<float> output) noexcept
{
    jassert (input.getNumSamples() <= longestPart);

    for (size_t channel = 0; channel < juce::jmin (lines.size(), input.getNumChannels()); ++channel)
    {
        const auto* source = input.getChannelPointer (channel);
        auto numSamples = input.getNumSamples();

        for (size_t n = 0; n < exponent; ++n)
        {
            auto* target = n + 1 == exponent ? output.getChannelPointer (channel) : between[n % 2].data();
            simd::kernels().halfBandUp (stages()[n].up.view(), lines[channel][n].up.data(), source, target,
                                        numSamples);
            source = target;
            numSamples *= 2;
        }
    }
}

void HalfBandOversampler::processDown (const juce::dsp::AudioBlock<const float>& input,
                                       juce::dsp::AudioBlock<float> output) noexcept
{
    jassert (output.getNumSamples() <= longestPart);

    for (size_t channel = 0; channel < juce::jmin (lines.size(), output.getNumChannels()); ++channel)
    {
        const auto* source = input.getChannelPointer (channel);
        auto numSamples = output.getNumSamples() << exponent;

        for (size_t n = exponent; n-- > 0;)
        {
            auto* target = n == 0 ? output.getChannelPointer (channel) : between[n % 2].data();
            auto& line = lines[channel][n];
            numSamples /= 2;
            simd::kernels().halfBandDown (stages()[n].down.view(), line.downEven.data(), line.downOdd.data(),
                                          source, target, numSamples);
            source = target;
        }
    }

    if (isDelayed)
        delay (output);
}

/** Two channels at a time, since each output waits for the one before. */
void HalfBandOversampler::delay (juce::dsp::AudioBlock<float>& block) noexcept
{
    const auto numChannels = juce::jmin (delays.size(), block.getNumChannels());

    for (size_t channel = 0; channel < numChannels; channel += 2)
    {
        const auto isPair = channel + 1 < numChannels;
        auto* first = block.getChannelPointer (channel);
        auto* second = isPair ? block.getChannelPointer (channel + 1) : first;
        auto a = delays[channel];
        auto b = isPair ? delays[channel + 1] : a;

        const auto next = [this] (Delay& state, float x)
        {
            state.previousOutput = state.previousInput + allpass * (x - state.previousOutput);
            state.previousInput = x;
            return state.previousOutput;
        };

        for (size_t i = 0; i < block.getNumSamples(); ++i)
        {
            const auto y = next (a, first[i]), z = next (b, second[i]);
            first[i] = y;
            second[i] = z;
        }

        delays[channel] = a;
        if (isPair)
            delays[channel + 1] = b;
    }
}
