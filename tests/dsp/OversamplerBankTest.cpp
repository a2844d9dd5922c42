#include "dsp/OversamplerBank.h"

#include "support/Signals.h"

#include <gtest/gtest.h>

namespace
{
constexpr auto numSamples = 2048;

struct EachFactor : testing::TestWithParam<int>
{
    EachFactor()
    {
        for (auto* each : bank)
            each->initProcessing (numSamples);

        response = signals::impulse (2, numSamples);
        juce::dsp::AudioBlock<float> block (response);
        const auto oversampled = oversampler().processSamplesUp (block);
        EXPECT_EQ (oversampled.getNumSamples(), size_t { numSamples } << GetParam());
        oversampler().processSamplesDown (block);
    }

    juce::dsp::Oversampling<float>& oversampler() { return *bank[GetParam()]; }

    /** At a fraction of the sample rate. */
    std::complex<double> responseAt (double frequency) const
    {
        return signals::transformAt (response.getReadPointer (1), numSamples, frequency);
    }

    OversamplerBank bank = makeOversamplerBank (2);
    juce::AudioBuffer<float> response;
};

TEST_P (EachFactor, DelaysByAsManyWholeSamplesAsItReports)
{
    const auto reported = oversampler().getLatencyInSamples();
    const auto latency = static_cast<int> (reported);
    EXPECT_EQ (static_cast<float> (latency), reported) << "nothing is lost in whole samples";

    const auto* samples = response.getReadPointer (0);
    const auto* peak = std::max_element (samples, samples + numSamples);
    EXPECT_EQ (peak - samples, latency);

    // And so by phase, where the fractional part of the delay does not bend it yet.
    for (auto frequency : { 0.001, 0.01 })
    {
        const auto aligned =
            responseAt (frequency) * std::polar (1.0, 2.0 * std::numbers::pi * frequency * latency);
        EXPECT_NEAR (std::arg (aligned) / (2.0 * std::numbers::pi * frequency), 0.0, 0.01) << frequency;
    }
}

TEST_P (EachFactor, IsFlatInThePassband)
{
    for (auto frequency = 0.0; frequency < 0.43; frequency += 0.01)
        ASSERT_NEAR (signals::toDb (std::abs (responseAt (frequency))), 0.0, 0.05) << frequency;
}

INSTANTIATE_TEST_SUITE_P (OversamplerBank, EachFactor, testing::Range (0, 5));
} // namespace
