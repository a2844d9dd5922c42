#include "dsp/ChainUnderTest.h"

#include <limits>

// What is no audio must not leave lasting damage: NaN, infinities, numbers whose sums overflow.

namespace
{
constexpr auto numBlocks = 16, damagedBlock = 3;
constexpr auto blockLength = 600; // more than one part at any factor
constexpr auto start = damagedBlock * blockLength;
constexpr auto multiBand = 1;

constexpr auto infinity = std::numeric_limits<float>::infinity();
constexpr auto denormal = 1.0e-40f;
const std::initializer_list<float> damages {
    std::numeric_limits<float>::quiet_NaN(), infinity, -infinity, 1.0e20f, -3.0e38f, denormal
};

/** Every curve takes part. */
void clipHard (ChainUnderTest& chain, int layout, int exponent)
{
    expected::Values values { { "layout", layout }, { "oversampling", exponent }, { "in_gain", 3.0 } };
    auto mode = 0;

    for (const auto& [id, name] : expected::sections)
        values.insert ({ { "threshold_" + id, -6.0 }, { "shape_" + id, 0.5 }, { "mode_" + id, mode++ % 5 } });

    chain.set (values);
}

using DamagedLayoutAndFactor = testing::TestWithParam<std::tuple<int, int>>;

INSTANTIATE_TEST_SUITE_P (SignalChainDamage, DamagedLayoutAndFactor,
                          testing::Combine (testing::Range (0, 4), testing::Values (0, 2, 4)));

TEST_P (DamagedLayoutAndFactor, ReturnToTheUndamagedOutput)
{
    const auto [layout, exponent] = GetParam();
    const auto hasMemory = exponent > 0 || layout == multiBand;

    for (const auto numChannels : { 1, 2 })
    {
        const auto signal = signals::noise (numChannels, numBlocks * blockLength);
        ChainUnderTest undamaged (numChannels, 22050.0, blockLength);
        clipHard (undamaged, layout, exponent);
        const auto expectedOutput = undamaged.render (signal, { blockLength });

        for (const auto damage : damages)
        {
            for (const auto position : { 0, 101, blockLength - 1 })
            {
                SCOPED_TRACE (testing::Message() << damage << " at " << position << " of " << numChannels);
                ChainUnderTest chain (numChannels, 22050.0, blockLength);
                clipHard (chain, layout, exponent);
                chain.waveformTaps.setPoints (300);

                auto input = signal;
                input.setSample (position % numChannels, start + position, damage);
                const auto output = chain.render (input, { blockLength });

                ASSERT_TRUE (signals::isFinite (output));
                for (const auto value : { chain.shortTermDifference, chain.peakDifference,
                                          chain.inputMaxPeakDb, chain.outputMaxPeakDb,
                                          chain.inputLoudness.momentary, chain.outputLoudness.integrated })
                    ASSERT_TRUE (std::isfinite (value));
                for (const auto value : chain.readings())
                    ASSERT_TRUE (std::isfinite (value));
                EXPECT_LE (output.getMagnitude (0, output.getNumSamples()), 1.0f);

                // The crossover's memory of 1e20 has faded after 70 of its time constants of 31 samples.
                const auto recovered = start + (hasMemory ? 10 * blockLength : position + 1);
                EXPECT_LE (
                    signals::largestDifference (output, expectedOutput, recovered, numBlocks * blockLength),
                    hasMemory ? 1.0e-6 : 0.0);
                EXPECT_EQ (signals::largestDifference (output, expectedOutput, 0,
                                                       start + (hasMemory ? 0 : position)),
                           0.0);
            }
        }
    }
}

TEST (SignalChainDamage, IsForgottenByEveryReading)
{
    const auto hear = [] (ChainUnderTest& chain, float sample, int position)
    {
        // Quiet at first; then until the graphs show nothing but what came after.
        auto signal = signals::noise (2, 6 * 8000 + 3 * blockLength);
        signal.applyGain (0, blockLength, 0.1f);
        for (auto channel : { 0, 1 })
            signal.setSample (channel, position, sample);

        chain.waveformTaps.setPoints (50);
        clipHard (chain, multiBand, 0);
        chain.render (signal, { blockLength });
    };

    ChainUnderTest undamaged (2, 8000.0, blockLength);
    hear (undamaged, 0.0f, 0);

    for (const auto damage : damages)
    {
        for (const auto position : { 0, 101, blockLength - 1 })
        {
            SCOPED_TRACE (testing::Message() << damage << " at " << position);
            ChainUnderTest chain (2, 8000.0, blockLength);
            hear (chain, damage, position);

            const auto isHuge = std::isfinite (damage) && std::abs (damage) > 1.0f;
            const auto readings = chain.readings (! isHuge), expected = undamaged.readings (! isHuge);
            for (size_t i = 0; i < readings.size(); ++i)
                ASSERT_NEAR (readings[i], expected[i], 1.0e-4) << i;

            // Counted in tenths.
            for (const auto loudness : { &ChainUnderTest::inputLoudness, &ChainUnderTest::outputLoudness })
                for (const auto reading :
                     { &kf::LUFSData::momentary, &kf::LUFSData::shortTerm, &kf::LUFSData::integrated,
                       &kf::LUFSData::rangeStart, &kf::LUFSData::rangeEnd })
                    ASSERT_NEAR (chain.*loudness.*reading, undamaged.*loudness.*reading, 0.11);
        }
    }
}
} // namespace
