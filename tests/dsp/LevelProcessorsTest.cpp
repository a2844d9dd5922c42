#include "dsp/LevelProcessors.h"

#include <gtest/gtest.h>

namespace
{
constexpr auto rate = 48000;

struct Channel : LevelChannel, testing::Test
{
    Channel() { prepare (rate); }

    void feed (float magnitude, int numSamples)
    {
        for (auto i = 0; i < numSamples; ++i)
            processSample (magnitude);
    }
};

TEST_F (Channel, HoldsAPeakForASecondAndReleasesIn300Ms)
{
    feed (1.0f, 1);

    // The bare peak falls at once, by a factor of e in 300 ms.
    feed (0.0f, rate * 3 / 10);
    EXPECT_NEAR (getData().peak, std::exp (-1.0), 1.0e-3);

    feed (0.0f, rate - 1 - rate * 3 / 10);
    EXPECT_EQ (getData().heldPeak, 1.0) << "the last sample of the second";
    feed (0.0f, 1);
    EXPECT_LT (getData().heldPeak, 1.0);
    feed (0.0f, rate * 3 / 10 - 1);
    EXPECT_NEAR (getData().heldPeak, std::exp (-1.0), 1.0e-3);
    EXPECT_EQ (getData().maxPeak, 1.0);

    // A higher one takes over at once; a lower one does not.
    feed (0.75f, 1);
    feed (0.5f, rate / 2);
    EXPECT_EQ (getData().heldPeak, 0.75);
}

TEST_F (Channel, RebuildsTheRunningSumOnceASecond)
{
    juce::Random random (3);
    for (auto i = 0; i < rate / 2; ++i)
        processSample (100.0f * random.nextFloat());

    // What the loud part left in the single precision sum drowns the quiet part, until the second is over.
    feed (0.001f, rate / 2 - 1);
    EXPECT_GT (std::abs (getData().rms - 0.001), 1.0e-4);
    feed (0.001f, 1);
    EXPECT_NEAR (getData().rms, 0.001, 1.0e-7);
}

TEST_F (Channel, ReadsNothingBelowMinus80Db)
{
    const auto readings = [this]
    {
        const auto data = getData();
        return std::vector { data.peak, data.rms, data.heldPeak, data.maxPeak, data.maxRms };
    };

    feed (0.000099f, rate);
    EXPECT_EQ (readings(), std::vector (5, 0.0));
    feed (0.000101f, rate);

    for (const auto reading : readings())
        EXPECT_NEAR (reading, 0.000101, 1.0e-7);
}
} // namespace
