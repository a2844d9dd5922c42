#include "dsp/WaveformHistory.h"

#include "support/Signals.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>

namespace
{
TEST (WaveformHistory, WaitsInEveryCallForWhoeverHoldsItsLock)
{
    WaveformHistory history;
    history.addTap (0.0f, 7, WaveformTap::filledBars);
    history.prepare (48000.0);
    history.setPoints (300);
    const auto& tap = history.taps.getReference (0);
    const auto signal = signals::noise (1, 800);

    const std::pair<const char*, std::function<void()>> calls[] {
        { "push", [&] { history.push (0, 1, signal.getArrayOfReadPointers(), 0, 800); } },
        { "setPoints", [&] { history.setPoints (200); } },
        { "clear", [&] { history.clear(); } },
        { "prepare", [&] { history.prepare (96000.0); } },
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
            const auto before = tap.writeIndex + tap.samplesPerPoint;
            other = std::thread (run);

            // Many more turns than the call would need.
            for (auto turn = 0; turn < 20000 && ! isDone; turn += isStarted ? 1 : 0)
                std::this_thread::yield();

            EXPECT_FALSE (isDone) << call.first;
            EXPECT_EQ (tap.writeIndex + tap.samplesPerPoint, before) << call.first;
        }

        other.join();
        EXPECT_TRUE (isDone);
    }
}
} // namespace
