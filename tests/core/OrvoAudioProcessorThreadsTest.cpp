#include "core/PluginUnderTest.h"
#include "support/AllocationGuard.h"

#include <gtest/gtest.h>

#include <limits>
#include <thread>

namespace
{
/** The allocator's calls while the signal goes through in blocks. */
int callsWhileRendering (PluginUnderTest& plugin, juce::AudioBuffer<float> signal,
                         const std::vector<int>& lengths)
{
    const AllocationGuard guard;
    signals::inBlocks (signal, lengths, [&] (auto& block) { plugin.process (block); });
    return guard.count();
}

using SteadyLayoutAndFactor = testing::TestWithParam<std::tuple<int, int>>;

INSTANTIATE_TEST_SUITE_P (OrvoAudioProcessor, SteadyLayoutAndFactor,
                          testing::Combine (testing::Range (0, 4), testing::Range (0, 5)));

TEST_P (SteadyLayoutAndFactor, AllocateNothingInTheBlock)
{
    const auto [layout, exponent] = GetParam();

    for (const auto numChannels : { 1, 2 })
    {
        // Four seconds: the loudness range starts after three.
        PluginUnderTest plugin (numChannels, 8000.0);
        const auto signal = signals::noise (numChannels, 32000);
        plugin.processor.waveformTaps.setPoints (300);
        plugin.set ("layout", layout);
        plugin.set ("oversampling", exponent);

        // The first block prepares the chain for the factor.
        EXPECT_EQ (callsWhileRendering (plugin, signal, { 512, 64, 0, 1, 700 }), 0) << numChannels;

        auto damaged = signal;
        damaged.setSample (0, 700, std::numeric_limits<float>::quiet_NaN());
        EXPECT_EQ (callsWhileRendering (plugin, damaged, { 512 }), 0) << "damaged";

        plugin.set ("enable", 0.0);
        EXPECT_EQ (callsWhileRendering (plugin, signal, { 512 }), 0) << "off";

        tessarin::LicenceManager::Status status;
        status.audioBlocked = true;
        plugin.processor.licenceManager.setStatus (status);
        EXPECT_EQ (callsWhileRendering (plugin, signal, { 512 }), 0) << "blocked";
    }
}

TEST (OrvoAudioProcessorThreads, AllocateNothingWhenTheHostAutomatesInTheBlock)
{
    PluginUnderTest plugin;
    auto block = signals::noise (2, 512);

    const float values[] { 0.2f, 0.9f, 0.6f };

    // In the first round JUCE makes room in its lists of listeners.
    for (auto round = 0; round < 3; ++round)
    {
        for (auto* parameter : plugin.processor.getParameters())
        {
            const AllocationGuard guard;
            parameter->setValueNotifyingHost (values[round]);
            plugin.process (block);
            const auto calls = guard.count();

            if (round > 0)
            {
                EXPECT_EQ (calls, 0) << parameter->getName (100) << ", round " << round;
            }
        }
    }
}

TEST (OrvoAudioProcessorThreads, ParameterChangesHoldTheProcessLock)
{
    PluginUnderTest plugin;
    auto calls = 0;
    auto wasFree = true;

    plugin.processor.singleClipper.setModeChangeHandler (
        [&]
        {
        ++calls;
        std::thread ([&] { wasFree = plugin.processor.processLock.tryEnter(); }).join();
    });

    plugin.set ("mode_single", 3.0);
    EXPECT_EQ (calls, 1);
    EXPECT_FALSE (wasFree);
}
} // namespace
