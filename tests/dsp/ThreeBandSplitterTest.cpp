#include "dsp/ThreeBandSplitter.h"

#include "support/Signals.h"

#include <gtest/gtest.h>

namespace
{
using signals::Buffer;

/** A fourth-order Linkwitz-Riley filter in double precision: two state variable filters with a damping of the
    root of two in a row, integrated by the trapezoidal rule. */
struct ReferenceFilter
{
    static constexpr auto damping = std::numbers::sqrt2;

    struct Outputs
    {
        double low, band, high;
    };

    struct Stage
    {
        Outputs run (double x, double g)
        {
            const auto high = (x - (damping + g) * s1 - s2) / (1.0 + damping * g + g * g);
            const auto band = s1 + g * high;
            const auto low = s2 + g * band;
            s1 = band + g * high;
            s2 = low + g * band;
            return { low, band, high };
        }

        double s1 = 0.0, s2 = 0.0;
    };

    double lowpass (double x, double g) { return second.run (first.run (x, g).low, g).low; }

    double highpass (double x, double g) { return second.run (first.run (x, g).high, g).high; }

    double allpass (double x, double g)
    {
        const auto y = first.run (x, g);
        return y.low - damping * y.band + y.high;
    }

    Stage first, second;
};

/** One channel's three bands; `low` and `high` are in cycles per sample. */
struct ReferenceSplitter
{
    std::array<double, 3> split (double x, double low, double high)
    {
        const auto gLow = std::tan (std::numbers::pi * low);
        const auto gHigh = std::tan (std::numbers::pi * high);
        const auto rest = lowHighpass.highpass (x, gLow);
        return { phase.allpass (lowLowpass.lowpass (x, gLow), gHigh), highLowpass.lowpass (rest, gHigh),
                 highHighpass.highpass (rest, gHigh) };
    }

    ReferenceFilter lowLowpass, lowHighpass, highLowpass, highHighpass, phase;
};

/** Splits 512 samples at a time. */
std::array<Buffer, 3> bandsOf (ThreeBandSplitter& splitter, Buffer input)
{
    std::array<Buffer, 3> bands { input, input, input };
    size_t start = 0;

    signals::inBlocks (input, { 512 },
                       [&] (Buffer& block)
                       {
        splitter.split (juce::dsp::AudioBlock<const float> (block));

        for (size_t band = 0; band < 3; ++band)
            splitter.mergeBands (juce::dsp::AudioBlock<float> (bands[band]).getSubBlock (start, 512),
                                 { static_cast<int> (band) });

        start += 512;
    });

    return bands;
}

/** With the frequencies set before. */
ThreeBandSplitter prepared (double rate, float low, float high)
{
    ThreeBandSplitter splitter;
    splitter.lowFrequency = low;
    splitter.highFrequency = high;
    splitter.prepare ({ rate, 512, 2 });
    return splitter;
}

struct SplitterRate : testing::TestWithParam<double>
{
};

TEST_P (SplitterRate, BandsMatchTheReferenceThroughAChangeOfFrequencies)
{
    const auto rate = GetParam();
    auto splitter = prepared (rate, 160.0f, 3500.0f);
    std::array<ReferenceSplitter, 2> reference;

    for (const auto& [low, high] : { std::pair { 160.0, 3500.0 }, { 1000.0, 10000.0 }, { 60.0, 2000.0 } })
    {
        if (low != 160.0)
            splitter.setFrequencies (static_cast<float> (low), static_cast<float> (high)); // the state stays

        const auto input = signals::noise (2, 40 * 512);
        const auto bands = bandsOf (splitter, input);

        for (auto channel : { 0, 1 })
        {
            for (auto i = 0; i < input.getNumSamples(); ++i)
            {
                const auto expected = reference[static_cast<size_t> (channel)].split (
                    static_cast<double> (input.getSample (channel, i)), low / rate, high / rate);

                for (size_t band = 0; band < 3; ++band)
                    ASSERT_NEAR (static_cast<double> (bands[band].getSample (channel, i)), expected[band],
                                 1.0e-5)
                        << "low " << low << " Hz, band " << band << ", sample " << i;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P (ThreeBandSplitter, SplitterRate, testing::Values (44100.0, 192000.0, 768000.0));

TEST (ThreeBandSplitter, MergesTheListedBands)
{
    auto splitter = prepared (48000.0, 300.0f, 4000.0f);
    const auto input = signals::noise (2, 512);
    const auto before = signals::noise (2, 512, 0.5f, 9);
    splitter.split (juce::dsp::AudioBlock<const float> (input));

    const auto merged = [&] (const juce::Array<int>& bands)
    {
        auto output = before;
        splitter.mergeBands (juce::dsp::AudioBlock<float> (output), bands);
        return output;
    };

    const auto sumOf = [&] (const juce::Array<int>& bands)
    {
        auto sum = signals::silence (2, 512);
        for (auto band : bands)
            for (auto channel : { 0, 1 })
                sum.addFrom (channel, 0, merged ({ band }), channel, 0, 512);
        return sum;
    };

    auto all = before;
    splitter.mergeAll (juce::dsp::AudioBlock<float> (all));

    EXPECT_GT (signals::largestDifference (merged ({ 0 }), merged ({ 2 })), 0.1);
    EXPECT_EQ (signals::largestDifference (all, sumOf ({ 0, 1, 2 })), 0.0);
    EXPECT_EQ (signals::largestDifference (merged ({}), all), 0.0) << "an empty list stands for all";
    EXPECT_EQ (signals::largestDifference (merged ({ 0, 2 }), sumOf ({ 0, 2 })), 0.0);
    EXPECT_EQ (signals::largestDifference (merged ({ 2, 1, 7, 0 }), sumOf ({ 2, 1 })), 0.0) << "ends at 7";
    EXPECT_EQ (signals::largestDifference (merged ({ -1, 0 }), before), 0.0) << "ends before it writes";
}
} // namespace
