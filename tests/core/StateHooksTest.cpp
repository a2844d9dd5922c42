#include "core/TessarinProcessor.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <utility>

namespace
{
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
        }).join();
    };

    processor.setCurrentProgram (1);

    if (waits)
        restore();

    EXPECT_EQ (processor.parameters.getRawParameterValue ("gain_single")->load(), 0.0f) << "the project's";
    EXPECT_EQ (processor.getCurrentProgram(), 0);
}
} // namespace
