#include "dsp/WaveformHistory.h"

#include "support/Signals.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace
{
constexpr auto emptyValue = -std::numeric_limits<float>::infinity();

/** Tap 0 shows raw peaks, tap 1 falls 40 dB in 100 ms. */
struct History : testing::Test
{
    History()
    {
        history.addTap (0.0f, 7, WaveformTap::filledBars);
        history.addTap (100.0f, 8, WaveformTap::line);
        history.prepare (48000.0);
        history.setPoints (300);
    }

    void pushLevel (int tap, float level, int numSamples)
    {
        const std::vector<float> samples (static_cast<size_t> (numSamples), level);
        const auto* channel = samples.data();
        history.push (tap, 1, &channel, 0, numSamples);
    }

    const WaveformTap& tap (int index) { return history.taps.getReference (index); }

    WaveformHistory history;
};

TEST_F (History, SpansFiveSecondsAtAnyWidth)
{
    for (const auto& [rate, points, samplesPerPoint] :
         { std::tuple { 48000.0, 300, 800 }, { 44100.0, 299, 737 }, { 96000.0, 300, 1600 } })
    {
        history.prepare (rate);
        pushLevel (0, 1.0f, 1000);
        history.setPoints (points + 1);
        history.setPoints (points);
        EXPECT_EQ (tap (0).values[0], emptyValue) << "another width empties";
        EXPECT_EQ (tap (0).samplesPerPoint, samplesPerPoint);
        EXPECT_EQ (tap (1).values.size(), points);

        // 100 ms of points fall by 40 dB.
        const auto pointsIn100ms = 0.1 * rate / samplesPerPoint;
        EXPECT_NEAR (std::pow (static_cast<double> (tap (1).smoothingCoefficient), pointsIn100ms), 0.01,
                     1.0e-6);
    }

    history.setPoints (300000);
    pushLevel (0, 1.0f, 3);
    EXPECT_EQ (tap (0).writeIndex, 3) << "more points than samples: each sample completes one";
}

TEST_F (History, StoresThePeakOfEachPointInDb)
{
    pushLevel (0, 0.1f, 799);
    EXPECT_EQ (tap (0).writeIndex, 0);
    pushLevel (0, -0.5f, 1);
    pushLevel (0, 0.25f, 800);
    pushLevel (0, 1.0e-6f, 800);

    EXPECT_NEAR (static_cast<double> (tap (0).values[0]), signals::toDb (0.5), 1.0e-4);
    EXPECT_NEAR (static_cast<double> (tap (0).values[1]), signals::toDb (0.25), 1.0e-4);
    EXPECT_EQ (tap (0).values[2], -100.0f) << "the floor";
    EXPECT_EQ (tap (0).values[3], emptyValue);
    EXPECT_EQ (tap (1).values[0], emptyValue) << "each tap has its own signal";

    pushLevel (0, 0.125f, 298 * 800);
    EXPECT_EQ (tap (0).writeIndex, 1) << "a ring";
    EXPECT_NEAR (static_cast<double> (tap (0).values[0]), signals::toDb (0.125), 1.0e-4);
}

TEST_F (History, HearsTheFirstTwoChannelsFromTheGivenSample)
{
    auto buffer = signals::silence (3, 801);
    buffer.setSample (0, 0, 1.0f);
    buffer.setSample (1, 5, -0.5f);
    buffer.setSample (2, 6, 1.0f);
    history.push (0, 3, buffer.getArrayOfReadPointers(), 1, 800);
    EXPECT_NEAR (static_cast<double> (tap (0).values[0]), signals::toDb (0.5), 1.0e-4);
}

TEST_F (History, SmoothsTheFallOfTheSecondTap)
{
    pushLevel (1, 1.0f, 800);
    pushLevel (1, 0.0f, 6 * 800);
    pushLevel (1, 0.5f, 800);

    // A point every 60th of a second: 40 dB in six.
    for (auto point = 0; point <= 6; ++point)
        EXPECT_NEAR (static_cast<double> (tap (1).values[point]), -40.0 * point / 6.0, 1.0e-3) << point;
    EXPECT_NEAR (static_cast<double> (tap (1).values[7]), signals::toDb (0.5), 1.0e-4)
        << "the rise is instant";
}

TEST_F (History, IsPushedAndResizedByTwoThreads)
{
    // At this rate each sample completes a point.
    history.prepare (60.0);
    std::atomic<bool> isFinished { false };
    std::thread audio (
        [&]
        {
        while (! isFinished)
            for (auto index : { 0, 1 })
                pushLevel (index, 0.5f, 700);
    });

    auto isSound = true;

    for (auto round = 0; round < 4000 && isSound; ++round)
    {
        history.setPoints (round * 37 % 500);

        if (round % 3 == 0)
            history.clear();

        const juce::ScopedLock scope (history.lock);
        for (const auto& each : history.taps)
        {
            isSound = isSound && each.values.size() == each.points && each.writeIndex <= each.points;
            for (auto value : each.values)
                isSound = isSound && (value == emptyValue || std::abs (value + 6.0206f) < 0.001f);
        }
    }

    isFinished = true;
    audio.join();
    EXPECT_TRUE (isSound);
}
} // namespace
