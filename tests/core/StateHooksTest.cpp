#include "core/TessarinProcessor.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace
{
using Calls = std::vector<std::string>;

/** A framework user that writes down when its hooks are called. */
class HookedProcessor final : public tessarin::TessarinProcessor
{
public:
    HookedProcessor() : TessarinProcessor (BusesProperties())
    {
        addParameterFloat ("gain_single", "Gain", -18.0f, 18.0f, 0.0f, "dB", 1, true);
        captureInitialState();

        onStateRestored = [this] (juce::ValueTree& tree)
        {
            calls.push_back ("onStateRestored at " + std::to_string (juce::roundToInt (gain())));
            tree.setProperty ("extra", "from the hook", nullptr);
        };
    }

    ~HookedProcessor() override { removeParameterListeners(); }

    void prepareToPlay (double, int) override {}

    juce::AudioProcessorEditor* createEditor() override { return nullptr; }

    void processAudio (juce::AudioBuffer<float>&) override {}

    void parameterChanged (const juce::String&, float value) override
    {
        calls.push_back ("gain " + std::to_string (juce::roundToInt (value)));
    }

    void stateCaptured (juce::ValueTree& state, bool initial) override
    {
        note ("stateCaptured", initial);
        state.setProperty ("captured", initial, nullptr);
    }

    void beforeStateCapture (bool preset, bool initial) override { note ("beforeCapture", preset, initial); }

    void beforeStateRestore (bool preset, bool initial) override
    {
        note ("beforeRestore", preset, initial);

        if (auto meanwhile = std::exchange (beforeNextRestore, {}))
            meanwhile();
    }

    void afterStateCapture (bool preset, bool initial) override { note ("afterCapture", preset, initial); }

    void afterStateRestore (bool preset, bool initial) override { note ("afterRestore", preset, initial); }

    float gain() const { return parameters.getRawParameterValue ("gain_single")->load(); }

    std::function<void()> beforeNextRestore;

    Calls takeCalls() { return std::exchange (calls, {}); }

private:
    template <typename... Flags>
    void note (const std::string& name, Flags... flags)
    {
        calls.push_back ((name + ... + (flags ? " 1" : " 0")));
    }

    Calls calls;
};

TEST (StateHooks, RunInOrderAroundEveryCaptureAndRestore)
{
    const TemporaryConfig config;
    config.preset ("Factory").createDirectory();
    const auto file = config.addPreset ("User/Loud.tpre", stateText (entry ("gain_single", "9")));

    HookedProcessor processor;
    EXPECT_EQ (processor.takeCalls(), (Calls { "beforeCapture 1 1", "stateCaptured 1", "afterCapture 1 1" }));
    EXPECT_EQ (processor.presetManager.initialState->getStringAttribute ("captured"), "1");

    juce::MemoryBlock block;
    processor.getStateInformation (block);
    EXPECT_EQ (processor.takeCalls(), (Calls { "beforeCapture 0 0", "afterCapture 0 0" }));

    processor.presetManager.loadPreset (1);
    EXPECT_EQ (processor.takeCalls(),
               (Calls { "beforeRestore 1 0", "onStateRestored at 0", "gain 9", "afterRestore 1 0" }));
    EXPECT_EQ (processor.parameters.state["extra"].toString(), "from the hook");

    processor.setStateInformation (block.getData(), static_cast<int> (block.getSize()));
    EXPECT_EQ (processor.takeCalls(),
               (Calls { "beforeRestore 0 0", "onStateRestored at 9", "gain 0", "afterRestore 0 0" }));

    processor.setStateInformation ("refused", 8);
    EXPECT_EQ (processor.takeCalls(), Calls {});

    tessarin::LicenceManager::Status status;
    status.restoreRefused = true;
    processor.licenceManager.setStatus (status);
    processor.setStateInformation (block.getData(), static_cast<int> (block.getSize()));
    EXPECT_EQ (processor.takeCalls(), Calls {});

    processor.presetManager.loadPreset (0);
    EXPECT_EQ (processor.takeCalls(),
               (Calls { "beforeRestore 1 1", "onStateRestored at 0", "afterRestore 1 1" }));

    const auto text = processor.presetManager.makePresetText ({}, {}, {});
    EXPECT_EQ (processor.takeCalls(), (Calls { "beforeCapture 1 0", "stateCaptured 0" }));
    EXPECT_TRUE (text.contains ("captured=\"0\""));
    processor.presetManager.finishSaving ({}, text);
    EXPECT_EQ (processor.takeCalls(), Calls {}) << "cancelled";
    processor.presetManager.finishSaving (file, text);
    EXPECT_EQ (processor.takeCalls(), (Calls { "afterCapture 1 0" }));

    file.deleteFile();
    EXPECT_FALSE (processor.presetManager.loadPreset (1) || processor.presetManager.loadPreset (5));
    EXPECT_EQ (processor.takeCalls(), (Calls { "beforeRestore 1 0", "beforeRestore 1 0" }));
}

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
        }).join();
    };

    processor.setCurrentProgram (1);

    if (waits)
        restore();

    EXPECT_EQ (processor.gain(), 0.0f) << "the project's";
    EXPECT_EQ (processor.getCurrentProgram(), 0);
}
} // namespace
