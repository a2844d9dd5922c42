// What "render" and "master" say of a file, and what "master" shares among threads.

#include "Loudness.h"

#include "HostTestSupport.h"
#include "MasterResult.h"
#include "Measurement.h"
#include "RenderPool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <set>
#include <stdexcept>
#include <thread>

namespace
{
constexpr auto rate = 48000.0;

struct Stretch
{
    /** Of a sine of 1 kHz in both channels, in dBFS. */
    double level, seconds;
};

juce::AudioBuffer<float> sines (const std::vector<Stretch>& stretches)
{
    auto frames = 0;
    for (const auto& stretch : stretches)
        frames += juce::roundToInt (stretch.seconds * rate);

    juce::AudioBuffer<float> audio (2, frames);
    auto frame = 0;
    for (const auto& [level, seconds] : stretches)
        for (const auto end = frame + juce::roundToInt (seconds * rate); frame < end; ++frame)
            for (auto channel = 0; channel < 2; ++channel)
                audio.setSample (channel, frame,
                                 static_cast<float> (std::pow (10.0, level / 20.0)
                                                     * std::sin (juce::MathConstants<double>::twoPi * 1000.0
                                                                 * frame / rate)));
    return audio;
}

/** In blocks of one length. */
void hear (Loudness& loudness, juce::AudioBuffer<float>& audio, int blockSize)
{
    for (auto start = 0; start < audio.getNumSamples(); start += blockSize)
    {
        const auto length = juce::jmin (blockSize, audio.getNumSamples() - start);
        const juce::AudioBuffer<float> block (audio.getArrayOfWritePointers(), 2, start, length);
        loudness.add (block, length);
    }
}

TEST (Loudness, SaysOfTheStandardsSignalsWhatTheStandardSays)
{
    struct Row
    {
        const char* name;
        std::vector<Stretch> stretches;
        double integrated, range, shortTerm;
    };

    // EBU Tech 3341, cases 1 and 5, and Tech 3342, cases 1 and 3. What they leave open is calculated: the range of a
    // steady tone is nothing, and the loudest three seconds are those of the loudest tone.
    const Row rows[] { { "3341-1", { { -23.0, 20.0 } }, -23.0, 0.0, -23.0 },
                       { "3341-5", { { -26.0, 20.0 }, { -20.0, 20.1 }, { -26.0, 20.0 } }, -23.0, 6.0, -20.0 },
                       { "3342-1", { { -20.0, 20.0 }, { -30.0, 20.0 } }, -22.6, 10.0, -20.0 },
                       { "3342-3", { { -40.0, 20.0 }, { -20.0, 20.0 } }, -20.1, 20.0, -20.0 } };

    for (const auto& [name, stretches, integrated, range, shortTerm] : rows)
    {
        auto audio = sines (stretches);
        Loudness whole (rate, 2), quick (rate, 2, Loudness::Extent::integrated);
        hear (whole, audio, 512);
        hear (quick, audio, 1000);

        EXPECT_NEAR (whole.getIntegrated(), integrated, 0.11) << name;
        EXPECT_NEAR (whole.getRange(), range, 1.0) << name;
        EXPECT_NEAR (whole.getMaximumShortTerm(), shortTerm, 0.1) << name;
        EXPECT_DOUBLE_EQ (quick.getIntegrated(), whole.getIntegrated()) << name;
        EXPECT_EQ (whole.getShortTermEachSecond().size(),
                   static_cast<size_t> (audio.getNumSamples() / 48000));

        // The plug-in's own meter weighs and gates as the standard says, in other blocks.
        Measurement meter (rate, 2, 512);
        for (auto start = 0; start + 512 <= audio.getNumSamples(); start += 512)
            meter.add ({ audio.getArrayOfWritePointers(), 2, start, 512 }, 512);
        EXPECT_NEAR (meter.getLoudnessText().getDoubleValue(), whole.getIntegrated(), 0.2) << name;
    }

    Loudness silence (rate, 2);
    auto nothing = juce::AudioBuffer<float> (2, 96000);
    nothing.clear();
    nothing.setSample (1, 50000, std::nanf (""));
    hear (silence, nothing, 333);
    EXPECT_EQ (levelText (silence.getIntegrated()) + levelText (silence.getTruePeak()), "--");
}

TEST (Loudness, FindsPeaksBetweenSamplesWhereverBlocksEnd)
{
    // A quarter of the rate, an eighth of a period late: the samples reach 0.7071 of the peak.
    juce::AudioBuffer<float> audio (2, 96000);
    audio.clear();
    for (const auto& [from, to, level] : { std::tuple { 20000, 21000, 0.5f }, { 60000, 64800, 0.6f } })
        for (auto i = from; i < to; ++i)
            audio.setSample (0, i, (i / 2) % 2 == 0 ? level : -level);

    for (const auto blockSize : { 1, 37, 480, 512, 5000, 96000 })
    {
        Loudness loudness (rate, 2, Loudness::Extent::whole, -6.0);
        hear (loudness, audio, blockSize);
        const auto& overs = loudness.getOvers();

        ASSERT_EQ (overs.size(), 2u) << blockSize;
        EXPECT_NEAR (loudness.getTruePeak(), 20.0 * std::log10 (0.6 * std::sqrt (2.0)), 0.6);
        EXPECT_NEAR (overs[0].seconds, 20000 / rate, 0.0101) << blockSize;
        EXPECT_NEAR (overs[0].length, 1000 / rate, 0.0201) << blockSize;
        EXPECT_NEAR (overs[0].level, 20.0 * std::log10 (0.5 * std::sqrt (2.0)), 0.6);
        EXPECT_NEAR (overs[1].seconds, 60000 / rate, 0.0101) << blockSize;
        EXPECT_NEAR (overs[1].length, 4800 / rate, 0.0201) << blockSize;
    }

    for (const auto& [level, text] : { std::pair { -0.04, "0.0" }, { -0.06, "-0.1" }, { -14.0, "-14.0" } })
        EXPECT_EQ (levelText (level), text);
}

TEST (Outline, KeepsTheExtremesOfEachColumn)
{
    Outline outline (60000);
    juce::AudioBuffer<float> block (2, 700);

    for (auto start = 0; start < 60000; start += 700)
    {
        block.clear();
        const auto length = juce::jmin (700, 60000 - start);
        for (auto i = 0; i < length; ++i)
            if (const auto column = (start + i) / 100; (start + i) % 100 == 37)
                block.setSample (column % 2, i,
                                 (column % 3 == 0 ? -1.0f : 1.0f) * static_cast<float> (column));
        outline.add (block, length);
    }

    for (auto i = 0; i < Outline::numColumns; ++i)
    {
        const auto& column = outline.getColumns()[static_cast<size_t> (i)];
        EXPECT_EQ (column.lowest, i % 3 == 0 ? static_cast<float> (-i) : 0.0f) << i;
        EXPECT_EQ (column.highest, i % 3 == 0 ? 0.0f : static_cast<float> (i)) << i;
    }
}

TEST (RenderPool, SharesTasksAmongThreadsAndTheMessageThread)
{
    const auto here = std::this_thread::get_id();
    const juce::ScopedJuceInitialiser_GUI juce;
    RenderPool pool (3, [] { return std::make_unique<PluginHost> (builtModule); });

    for (const auto count : { 0, 1, 2, 50 })
    {
        std::mutex mutex;
        std::multiset<int> done;
        std::map<std::thread::id, std::set<PluginHost*>> hostsOfThreads;
        std::atomic<int> wrongThreads { 0 };
        auto idled = 0;

        pool.run (
            count,
            [&] (PluginHost& host, int index)
            {
                pool.onMessageThread ([&] { wrongThreads += std::this_thread::get_id() == here ? 0 : 1; });
                EXPECT_THROW (pool.onMessageThread ([] { throw std::runtime_error ("told"); }),
                              std::runtime_error);

                const std::scoped_lock lock (mutex);
                done.insert (index);
                hostsOfThreads[std::this_thread::get_id()].insert (&host);
            },
            [&] { ++idled; });

        EXPECT_EQ (done.size(), static_cast<size_t> (count));
        EXPECT_EQ (std::set<int> (done.begin(), done.end()).size(), done.size()) << "each once";
        EXPECT_EQ (wrongThreads, 0);
        EXPECT_EQ (idled > 0, count > 0);
        for (const auto& [thread, hosts] : hostsOfThreads)
            EXPECT_TRUE (thread != here && hosts.size() == 1);
    }

    std::atomic<int> started { 0 };
    const auto fail = [&] (PluginHost&, int)
    {
        ++started;
        throw std::runtime_error ("a task's");
    };
    EXPECT_THROW (pool.run (100, fail, [] {}), std::runtime_error);
    EXPECT_LE (started, 3);
}
} // namespace
