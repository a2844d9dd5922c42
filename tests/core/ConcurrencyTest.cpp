#include "core/PluginUnderTest.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace
{
/** What an open editor does on every timer: published values without a lock, histories with theirs. Not a
    number only by a fault. */
double readLikeAnEditor (OrvoAudioProcessor& processor)
{
    const auto loudness = processor.outputLoudness;
    const auto level = processor.levels.output.left.getData();
    const auto& section = processor.singleClipper;
    processor.waveformTaps.setPoints (200);

    const juce::ScopedLock scope (processor.spectrum.lock);
    const auto magnitudes = processor.spectrum.magnitudes;
    const auto sum = magnitudes.getFirst() + loudness.shortTerm + loudness.integrated
                     + processor.peakDifference + processor.outputMaxPeakDb + section.current->envelope;
    return level.peak + level.maxRms + static_cast<double> (sum) + section.current->changeCount
           + section.currentModeId;
}

/** Audio, automation, the host's state calls and the user's presets, each on its thread. What is asserted
    here matters less than what the thread sanitizer sees. */
TEST (Concurrency, StateMovesOnAnyThreadWhileAudioRuns)
{
    const TemporaryConfig config;
    config.preset ("Factory").createDirectory();
    config.addPreset ("User/Loud.tpre", stateText (entry ("gain_single", "9") + entry ("oversampling", "2")));
    config.addPreset ("User/Wide.tpre", stateText (entry ("layout", "1") + entry ("in_gain", "6")));

    PluginUnderTest plugin;
    auto& processor = plugin.processor;
    std::atomic<bool> isFinished { false }, isSound { true }, isWhole { true };
    constexpr auto numRounds = 150;

    std::thread audio (
        [&]
        {
        const auto signal = signals::noise (2, 256);

        while (! isFinished)
        {
            const auto output = plugin.render (signal);
            isSound = isSound && signals::isFinite (output) && output.getMagnitude (0, 256) <= 1.0f;
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
            const auto size = static_cast<int> (block.getSize());
            const auto xml = juce::AudioProcessor::getXmlFromBinary (block.getData(), size);
            isWhole = isWhole && xml != nullptr && xml->getNumChildElements() == 71;
            processor.setStateInformation (block.getData(), size);
        }

        isFinished = true;
    });

    // This is the message thread: the user loads presets and saves one, the host asks for programs, the editor is open,
    // and the timer runs that writes parameters into the tree.
    for (auto i = 0; ! isFinished; ++i)
    {
        auto& manager = processor.presetManager;

        if (i % 4 == 0)
        {
            manager.loadPreset (i / 4 % 3);
            isWhole = isWhole && juce::parseXML (manager.makePresetText ("a", "b", "c")) != nullptr;
        }

        if (i % 64 == 0)
            manager.loadPresets();

        isWhole = isWhole && processor.getProgramName (processor.getCurrentProgram()).isNotEmpty();
        isSound = isSound && std::isfinite (readLikeAnEditor (processor));
        juce::Timer::callPendingTimersSynchronously();
    }

    for (auto* thread : { &audio, &automation, &host })
        thread->join();

    EXPECT_TRUE (isSound);
    EXPECT_TRUE (isWhole);
}
} // namespace
