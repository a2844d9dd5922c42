#include "core/PluginUnderTest.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace
{
/** Audio, automation, the host's state calls and the user's presets, each on its thread. What is counted here
    matters less than what the thread sanitizer sees. */
TEST (Concurrency, StateMovesOnAnyThreadWhileAudioRuns)
{
    const TemporaryConfig config;
    config.preset ("Factory").createDirectory();
    config.addPreset ("User/Loud.tpre", stateText (entry ("gain_single", "9") + entry ("oversampling", "2")));
    config.addPreset ("User/Wide.tpre", stateText (entry ("layout", "2") + entry ("in_gain", "6")));

    PluginUnderTest plugin;
    auto& processor = plugin.processor;
    std::atomic<bool> isFinished { false };
    auto isSound = true, isWhole = true;
    constexpr auto numRounds = 150;

    std::thread audio (
        [&]
        {
        const auto signal = signals::noise (2, 256);

        while (! isFinished)
        {
            const auto output = plugin.render (signal);
            isSound = isSound && isFinite (output) && output.getMagnitude (0, 256) <= 1.0f;
        }
    });

    std::thread automation (
        [&]
        {
        juce::Random random (1);
        const auto& parameters = processor.getParameters();

        while (! isFinished)
            parameters[random.nextInt (parameters.size())]->setValueNotifyingHost (random.nextFloat());
    });

    std::thread host (
        [&]
        {
        for (auto i = 0; i < numRounds; ++i)
        {
            juce::MemoryBlock block;
            processor.getStateInformation (block);

            const auto xml =
                juce::AudioProcessor::getXmlFromBinary (block.getData(), static_cast<int> (block.getSize()));
            isWhole = isWhole && xml != nullptr && xml->getNumChildElements() == 71;

            processor.setStateInformation (block.getData(), static_cast<int> (block.getSize()));
        }

        isFinished = true;
    });

    // This is the message thread: the user loads presets and saves one, the host asks for programs, and the
    // timers run that write parameters into the tree.
    for (auto i = 0; ! isFinished; ++i)
    {
        auto& manager = processor.presetManager;
        manager.loadPreset (i % 3);
        isWhole = isWhole && processor.getProgramName (processor.getCurrentProgram()).isNotEmpty();
        isWhole = isWhole && juce::parseXML (manager.makePresetText ("a", "b", "c")) != nullptr;

        if (i % 16 == 0)
            manager.loadPresets();

        juce::Timer::callPendingTimersSynchronously();
        processor.inputLoudnessMeter.reset();
    }

    for (auto* thread : { &audio, &automation, &host })
        thread->join();

    EXPECT_TRUE (isSound);
    EXPECT_TRUE (isWhole);
}
} // namespace
