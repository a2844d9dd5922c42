#include "dsp/LUFSMeter.h"

#include "support/Signals.h"

#include <gtest/gtest.h>

#include <set>

namespace
{
using signals::Buffer;
using signals::toGain;

/** A stereo meter and the stream that it hears, in blocks of 512. */
struct Listener : kf::LUFSMeter
{
    explicit Listener (double sampleRate = 48000.0) : rate (sampleRate) { prepareToPlay (rate, 2, 512, 30); }

    void hear (Buffer buffer)
    {
        signals::inBlocks (buffer, { 512 }, [this] (Buffer& block) { processBlock (block); });
    }

    int samplesIn (double seconds) const { return juce::roundToInt (seconds * rate); }

    /** Sine of 1 kHz in both channels, of a peak in dB. */
    void hearTone (double levelDb, double seconds)
    {
        hear (signals::sine (2, samplesIn (seconds), 1000.0, rate, toGain (levelDb)));
    }

    void hearSilence (double seconds) { hear (signals::silence (2, samplesIn (seconds))); }

    double rate;
};

std::vector<float> readingsOf (const kf::LUFSMeter& meter)
{
    const auto data = meter.getData();
    return { data.momentary,  data.momentaryMax, data.shortTerm, data.shortTermMax,
             data.integrated, data.rangeStart,   data.rangeEnd };
}

TEST (LUFSMeter, ReadsASteadyToneOnEveryScaleAtEveryRate)
{
    for (auto rate : { 44100.0, 44101.0, 48000.0, 192000.0 })
    {
        for (auto level : { -23.0, -33.0 })
        {
            Listener meter (rate);
            meter.hearTone (level, 20.0);
            for (auto reading : readingsOf (meter))
                EXPECT_NEAR (static_cast<double> (reading), level, 0.1) << rate << " Hz";
        }
    }
}

/** Test signals of EBU Tech 3341 (loudness) and Tech 3342 (range), stereo sine of 1 kHz. */
TEST (LUFSMeter, ReadsThePublishedSequences)
{
    using Reading = float kf::LUFSData::*;
    const auto integrated = &kf::LUFSData::integrated;
    const auto shortTerm = &kf::LUFSData::shortTerm;
    const auto momentary = &kf::LUFSData::momentary;
    const auto range = &kf::LUFSData::range;

    struct
    {
        const char* name;
        Reading reading;
        double expected;
        int repeats;
        std::vector<std::pair<double, double>> steps; // level and seconds
    } const cases[] {
        { "3341-3", integrated, -23, 1, { { -36, 10 }, { -23, 60 }, { -36, 10 } } },
        { "3341-4", integrated, -23, 1, { { -72, 10 }, { -36, 10 }, { -23, 60 }, { -36, 10 }, { -72, 10 } } },
        { "3341-5", integrated, -23, 1, { { -26, 20 }, { -20, 20.1 }, { -26, 20 } } },
        { "3341-9", shortTerm, -23, 5, { { -20, 1.34 }, { -30, 1.66 } } },
        { "3341-12", momentary, -23, 25, { { -20, 0.18 }, { -30, 0.22 } } },
        { "3342-1", range, 10, 1, { { -20, 20 }, { -30, 20 } } },
        { "3342-2", range, 5, 1, { { -20, 20 }, { -15, 20 } } },
        { "3342-3", range, 20, 1, { { -40, 20 }, { -20, 20 } } },
        { "3342-4", range, 15, 1, { { -50, 20 }, { -35, 20 }, { -20, 20 }, { -35, 20 }, { -50, 20 } } },
    };

    for (const auto& [name, reading, expected, repeats, steps] : cases)
    {
        Listener meter;

        for (auto repeat = 0; repeat < repeats; ++repeat)
        {
            for (const auto& [level, seconds] : steps)
                meter.hearTone (level, seconds);

            // As published.
            EXPECT_NEAR (static_cast<double> (meter.getData().*reading), expected,
                         reading == range ? 1.0 : 0.1)
                << name << ", repeat " << repeat;
        }
    }
}

TEST (LUFSMeter, ReadsLowWhileItsWindowsFill)
{
    Listener meter;
    meter.hearTone (-23.04, 0.1);
    EXPECT_NEAR (static_cast<double> (meter.momentaryLoudness), -23.04 + 10.0 * std::log10 (0.25), 0.1);
    meter.hearTone (-23.04, 0.9);
    EXPECT_NEAR (static_cast<double> (meter.momentaryLoudness), -23.04, 0.1);
    EXPECT_NEAR (static_cast<double> (meter.shortTermLoudness), -23.04 + 10.0 * std::log10 (1.0 / 3.0), 0.1);
}

/** Gates over all that was measured each tenth of a second, kept as a plain sorted list of tenths of a LU. */
struct Measured
{
    void add (double loudness, bool isListed)
    {
        if (loudness > -70.0)
        {
            power += std::pow (10.0, 0.1 * loudness);
            ++loud;
        }

        if (loudness > -100.0 && isListed)
            tenths.insert (static_cast<int> (std::round (10.0 * loudness)));
    }

    /** Those within `depth` LU of the mean; none while nothing reaches so far. */
    std::vector<int> gated (double depth) const
    {
        const auto gate = loud > 0 ? 10.0 * std::log10 (power / loud) - depth : -70.0;

        if (tenths.empty() || *tenths.rbegin() * 0.1 <= gate)
            return {};

        return { tenths.lower_bound (static_cast<int> (10.0 * gate)), tenths.end() };
    }

    double power = 0.0;
    int loud = 0;
    std::multiset<int> tenths;
};

TEST (LUFSMeter, GatesAndRanksEveryTenthOfASecond)
{
    Listener meter;
    juce::Random random (3);

    for (auto run = 0; run < 3; ++run, meter.reset())
    {
        Measured momentary, shortTerm;
        auto withSignal = 0, moved = 0;
        auto level = 0.0, integrated = -300.0, start = -300.0, end = -300.0;

        for (auto tenth = 0; tenth < 900; ++tenth)
        {
            // Programme between -35 and 0, now and then a fade to what gates hide, or nothing at all.
            if (random.nextInt (12) == 0)
                level = random.nextInt (5) == 0 ? -45.0 - 65.0 * random.nextDouble()
                                                : -35.0 * random.nextDouble() * random.nextDouble();

            const auto isSilent = random.nextInt (10) == 0;
            isSilent ? meter.hearSilence (0.1) : meter.hearTone (level, 0.1);
            withSignal += isSilent ? 0 : 1;

            const auto loudnessOf = [] (const std::vector<double>& meanSquare)
            { return 10.0 * std::log10 (meanSquare[0] + meanSquare[1]) - 0.691; };
            momentary.add (loudnessOf (meter.momentaryMeanSquare), true);
            shortTerm.add (loudnessOf (meter.shortTermMeanSquare), withSignal >= 30);

            if (const auto above = momentary.gated (10.0); ! above.empty())
            {
                auto sum = 0.0;
                for (auto each : above)
                    sum += std::pow (10.0, 0.01 * each);
                integrated = 10.0 * std::log10 (sum / static_cast<double> (above.size()));
            }

            if (const auto above = shortTerm.gated (20.0); ! above.empty() && ! isSilent)
            {
                // The tenth of all below, and the twentieth above, rounded up to whole blocks.
                const auto count = static_cast<double> (above.size());
                const auto before = start;
                start = 0.1 * above[static_cast<size_t> (std::ceil (0.1 * count)) - 1];
                moved += std::abs (start - before) > 0.05 ? 1 : 0;
                end = 0.1 * above[above.size() - static_cast<size_t> (std::ceil (0.05 * count))];
            }

            ASSERT_NEAR (static_cast<double> (meter.integratedLoudness), integrated, 1.0e-3)
                << run << ", " << tenth;
            ASSERT_NEAR (static_cast<double> (meter.loudnessRangeStart), start, 1.0e-4)
                << run << ", " << tenth;
            ASSERT_NEAR (static_cast<double> (meter.loudnessRangeEnd), end, 1.0e-4) << run << ", " << tenth;
        }

        EXPECT_GT (moved, 10) << "a range that stands still proves nothing";
    }
}

TEST (LUFSMeter, ShowsNothingForSilence)
{
    Listener meter;
    meter.hearSilence (60.0);
    EXPECT_FALSE (meter.getData().isLongEnough);
    meter.hearSilence (0.1);

    EXPECT_TRUE (meter.getData().isLongEnough);
    EXPECT_EQ (readingsOf (meter), std::vector (7, kf::noLoudness));
}

TEST (LUFSMeter, ResetKeepsThePositionInTheBinAndNothingElse)
{
    Listener meter;
    const auto halfBin = signals::sine (2, meter.numberOfSamplesPerBin / 2, 1000.0, 48000.0);
    meter.hearTone (0.0, 5.0);
    meter.hear (halfBin);
    const auto currentBin = meter.currentBin;

    meter.reset();
    EXPECT_EQ (readingsOf (meter), std::vector (7, kf::noLoudness));
    EXPECT_EQ (meter.blocksMeasured, 0);
    EXPECT_EQ (meter.currentBin, currentBin);

    // The bin ends after its second half and holds no more than that, of twelve in the window.
    meter.hear (halfBin);
    EXPECT_NE (meter.currentBin, currentBin);
    EXPECT_NEAR (static_cast<double> (meter.momentaryLoudness), 10.0 * std::log10 (0.5 / 12.0), 0.1);

    // Nothing of the louder past counts, and the range waits for three seconds again.
    meter.reset();
    meter.hearTone (-40.0, 2.8);
    EXPECT_NEAR (static_cast<double> (meter.integratedLoudness), -40.0, 0.5);
    EXPECT_EQ (meter.loudnessRangeStart, kf::noLoudness);
}
} // namespace
