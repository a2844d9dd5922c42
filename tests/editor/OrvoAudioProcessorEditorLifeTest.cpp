#include "editor/OpenEditor.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace
{
/** A host that automates everything an editor follows, in each block, and restores state in between. */
void automate (PluginUnderTest& plugin, const juce::MemoryBlock& state, const std::atomic<bool>& isRunning)
{
    using Clock = std::chrono::steady_clock;
    juce::AudioBuffer<float> block (2, 64);

    for (auto i = 0; isRunning; ++i)
    {
        const auto begin = Clock::now();
        plugin.set ("layout", i % 4);
        plugin.set ("enable", i % 3 == 0 ? 0.0 : 1.0);
        plugin.set ("mode_single", i % 5);
        plugin.set ("enable_post", i % 2);

        if (i % 16 == 0)
            plugin.restore (state);

        block.clear();
        plugin.process (block);

        // What is left of the processor, whatever a sanitizer makes of its speed: JUCE's queue is served to its end,
        // and has none for a host that leaves nothing.
        std::this_thread::sleep_for (10 * (Clock::now() - begin));
    }
}
} // namespace

TEST (OrvoEditor, LeavesNobodyBehindWhenItCloses)
{
    OpenEditor open;
    auto& p = open.plugin.processor;
    const auto state = open.plugin.capture();

    // Everything that an open window listens to.
    const auto automate = [&]
    {
        for (const auto& parameter : expected::parameters())
            for (const auto value : { parameter.max, parameter.min, parameter.defaultValue })
                open.plugin.set (parameter.id, value);
    };
    const auto changeAll = [&]
    {
        automate();
        EXPECT_TRUE (p.presetManager.loadPreset (1));
        p.presetManager.finishSaving (open.config.preset ("User/New.tpre"),
                                      p.presetManager.makePresetText ({}, {}, {}));
        open.plugin.restore (state);
        p.licenceManager.setStatus ({});
        p.settings.setValue ("scale", 2.0);
        p.settings.sendChangeMessage();
        p.toastManager.showError ("Alone");
    };

    // The window closes with all that still on its way to it.
    changeAll();
    std::thread (automate).join();
    open.close();
    changeAll();
    dispatchMessages();
    EXPECT_EQ (p.toastManager.getParentComponent(), nullptr);
    open.open();
    EXPECT_TRUE (open.hasScale (2.0f));
    EXPECT_EQ (open.editor->topBar.presetBox.getText(), p.getProgramName (p.getCurrentProgram()));
}

TEST (OrvoEditor, OpensAndClosesAtAnyMomentWhileAudioAndAutomationGoOn)
{
    const TemporaryConfig config;
    config.addPreset ("Factory/Loud.tpre", stateText());

    // As a plug-in's view lies in its host's window. A window of its own gets its size when the window manager has
    // thought about it, and until then the old one.
    juce::Component hostWindow;
    hostWindow.addToDesktop (juce::ComponentPeer::windowIsTemporary);

    constexpr auto numInstances = 4, numRounds = 4;
    std::vector<std::unique_ptr<PluginUnderTest>> plugins;
    std::vector<std::thread> hosts;
    std::atomic<bool> isRunning { true };

    for (auto i = 0; i < numInstances; ++i)
    {
        plugins.push_back (std::make_unique<PluginUnderTest>());
        hosts.emplace_back ([&isRunning, &plugin = *plugins.back(), state = plugins.back()->capture()]
                            { automate (plugin, state, isRunning); });
    }

    for (auto round = 0; round < numRounds; ++round)
    {
        std::vector<std::unique_ptr<juce::AudioProcessorEditor>> editors;

        for (auto& plugin : plugins)
        {
            editors.emplace_back (plugin->processor.createEditorIfNeeded());
            editors.back()->addToDesktop (0, hostWindow.getWindowHandle());
            editors.back()->setVisible (true);
            editors.back()->setSize (977 + 10 * round, 800 + round);
        }

        // Messages that are pending when a window goes must find nobody.
        dispatchPosted (round);

        for (size_t i = 0; i < editors.size(); ++i)
        {
            EXPECT_EQ (plugins[i]->processor.editorWidth, 977 + 10 * round);
            plugins[i]->processor.editorBeingDeleted (editors[i].get());
        }
    }

    isRunning = false;

    for (auto& host : hosts)
        host.join();

    dispatchMessages();
}
