#include "core/PluginUnderTest.h"
#include "support/AllocationGuard.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <limits>
#include <thread>
#include <utility>

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

        plugin.setLicence ([] (auto& status) { status.audioBlocked = true; });
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

/** A plug-in of the same maker that is told of every restore. */
class HookedProcessor final : public tessarin::TessarinProcessor
{
public:
    HookedProcessor() : TessarinProcessor (BusesProperties())
    {
        addParameterFloat ("gain_single", "Gain", -18.0f, 18.0f, 0.0f, "dB", 1, false);
        captureInitialState();
    }

    void prepareToPlay (double, int) override {}

    juce::AudioProcessorEditor* createEditor() override { return nullptr; }

    void processAudio (juce::AudioBuffer<float>&) override {}

    void parameterChanged (const juce::String&, float) override {}

    void beforeStateRestore (bool, bool) override
    {
        if (auto meanwhile = std::exchange (beforeNextRestore, {}))
            meanwhile();
    }

    std::function<void()> beforeNextRestore;
};

TEST (StateHooks, LeaveNoGapForARestoreBetweenTheHostsProgramAndItsPreset)
{
    const TemporaryConfig config;
    config.preset ("Factory").createDirectory();
    config.addPreset ("User/Loud.tpre", stateText (entry ("gain_single", "9")));
    HookedProcessor processor;
    processor.getMillisecondCounter = [] { return 5000u; };

    juce::MemoryBlock block;
    processor.getStateInformation (block);
    const auto restore = [&]
    { processor.setStateInformation (block.getData(), static_cast<int> (block.getSize())); };
    auto waits = false;

    // The program is to be loaded, and another thread of the host restores its project.
    processor.beforeNextRestore = [&]
    {
        std::thread (
            [&]
            {
                const juce::ScopedTryLock lock (processor.stateLock);
                waits = ! lock.isLocked();

                if (! waits)
                    restore();
            })
            .join();
    };

    processor.setCurrentProgram (1);

    if (waits)
        restore();

    EXPECT_EQ (processor.parameters.getRawParameterValue ("gain_single")->load(), 0.0f) << "the project's";
    EXPECT_EQ (processor.getCurrentProgram(), 0);
}

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
                const auto block = plugin.capture();
                const auto xml = juce::AudioProcessor::getXmlFromBinary (block.getData(),
                                                                         static_cast<int> (block.getSize()));
                isWhole = isWhole && xml != nullptr && xml->getNumChildElements() == 71;
                plugin.restore (block);
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
