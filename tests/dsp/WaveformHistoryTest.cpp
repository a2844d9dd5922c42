#include "dsp/WaveformHistory.h"

#include "support/Signals.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
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

TEST_F (History, WaitsInEveryCallForWhoeverHoldsItsLock)
{
    const std::pair<const char*, std::function<void()>> calls[] {
        { "push", [this] { pushLevel (0, 0.5f, 800); } },
        { "setPoints", [this] { history.setPoints (200); } },
        { "clear", [this] { history.clear(); } },
        { "prepare", [this] { history.prepare (96000.0); } },
    };

    for (const auto& call : calls)
    {
        std::atomic<bool> isStarted { false }, isDone { false };
        const auto run = [&]
        {
            isStarted = true;
            call.second();
            isDone = true;
        };
        std::thread other;

        {
            const juce::ScopedLock scope (history.lock);
            const auto before = tap (0).writeIndex + tap (1).samplesPerPoint;
            other = std::thread (run);

            // Many more turns than the call would need.
            for (auto turn = 0; turn < 20000 && ! isDone; turn += isStarted ? 1 : 0)
                std::this_thread::yield();

            EXPECT_FALSE (isDone) << call.first;
            EXPECT_EQ (tap (0).writeIndex + tap (1).samplesPerPoint, before) << call.first;
        }

        other.join();
        EXPECT_TRUE (isDone);
    }
}
} // namespace
