#include "common/ColourIds.h"
#include "editor/OpenEditor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>
#include <tuple>

using juce::Rectangle;

namespace
{
std::vector<MultiModeClipperEditor*> shownPanels (OrvoAudioProcessorEditor& e)
{
    std::vector<MultiModeClipperEditor*> shown;

    for (auto* child : e.getChildren())
        if (auto* panel = dynamic_cast<MultiModeClipperEditor*> (child);
            panel != nullptr && panel->isVisible())
            shown.push_back (panel);

    return shown;
}
} // namespace

TEST (OrvoEditor, FillsTheWindowInEachLayout)
{
    OpenEditor open;
    auto& e = *open.editor;
    const std::vector<std::vector<MultiModeClipperEditor*>> panels {
        { &e.singleEditor, &e.postEditor },
        { &e.lowBandEditor, &e.midBandEditor, &e.highBandEditor, &e.postEditor },
        { &e.midChannelEditor, &e.sideChannelEditor, &e.postEditor },
        { &e.leftChannelEditor, &e.rightChannelEditor, &e.postEditor },
    };

    for (const auto& [layout, w, h] :
         { std::tuple { 0, 1068, 800 }, { 2, 2000, 1500 }, { 3, 977, 800 }, { 1, 977, 800 } })
    {
        SCOPED_TRACE (layout);
        open.set ("layout", layout);
        e.setSize (w, h);
        const auto shown = shownPanels (e);
        EXPECT_EQ (shown, panels[static_cast<size_t> (layout)]);
        EXPECT_EQ (e.bandEditor.isVisible(), layout == 1);

        for (auto i = 0; i < 4; ++i)
            EXPECT_EQ (e.inputPanel.layoutButtons.buttons[i]->getToggleState(), i == layout);

        Rectangle<int> area (w, h);
        EXPECT_EQ (e.topBar.getBounds(), area.removeFromTop (38));
        EXPECT_EQ (e.tooltipPanel.getBounds(), area.removeFromBottom (30));
        EXPECT_EQ (e.presetBrowser.getBounds(), area);
        auto row = area.removeFromBottom (462);
        EXPECT_EQ (e.inputPanel.getBounds(), row.removeFromLeft (140));

        for (auto* panel : shown)
            EXPECT_EQ (panel->getBounds(), row.removeFromLeft ((w - 440) / static_cast<int> (shown.size())));

        EXPECT_EQ (e.outputPanel.getBounds(), row);
        EXPECT_TRUE (layout != 1 || e.bandEditor.getBounds() == area.removeFromBottom (100));
        EXPECT_EQ (e.waveformGraph.getBounds(), area);
    }
}

TEST (OrvoEditor, KeepsItsSizeAndMultipliesTheScales)
{
    OpenEditor open;
    EXPECT_EQ (open.editor->getBounds().withZeroOrigin(), (Rectangle<int> (1068, 800)));

    open.editor->setSize (1200, 900);
    open.close();
    open.open();
    EXPECT_EQ (open.editor->getWidth(), 1200);
    EXPECT_EQ (open.editor->getHeight(), 900);

    open.plugin.processor.settings.setValue ("scale", 2.0);

    for (const auto& [hostScale, total] :
         { std::pair { 1.5f, 3.0f }, { 0.0f, 3.0f }, { -1.0f, 3.0f }, { 1.0f, 2.0f } })
    {
        open.editor->setScaleFactor (hostScale);
        EXPECT_TRUE (open.editor->getTransform() == juce::AffineTransform::scale (total)) << hostScale;
        EXPECT_EQ (open.editor->getWidth(), 1200);
    }

    // Whatever stands in the file, the window can be seen.
    for (const auto* damaged : { "0", "-1", "abc", "nan", "inf", "40", "0.0001", "0.24" })
    {
        open.plugin.processor.settings.setValue ("scale", damaged);
        open.editor->setScaleFactor (1.5f);
        EXPECT_TRUE (open.editor->getTransform() == juce::AffineTransform::scale (1.5f)) << damaged;
    }

    open.plugin.processor.settings.setValue ("scale", 0.25);
    open.editor->setScaleFactor (1.0f);
    EXPECT_TRUE (open.editor->getTransform() == juce::AffineTransform::scale (0.25f)) << "less than offered";

    open.editor->setBoundsConstrained ({ 10, 10 });
    EXPECT_EQ (open.editor->getBounds().getBottomRight(), juce::Point (977, 800));
    open.editor->setBoundsConstrained ({ 5000, 5000 });
    EXPECT_EQ (open.editor->getLocalBounds(), (Rectangle<int> (2000, 1500)));
    EXPECT_TRUE (open.editor->isResizable());
}

TEST (OrvoEditor, LaysOverlaysOverTheContentInTheirOrder)
{
    OpenEditor open;
    auto& e = *open.editor;
    e.setPresetBrowserVisible (true);

    const std::vector<juce::Component*> order { &e.outputPanel,   &e.presetBrowser,   e.toastManager,
                                                &e.settingsModal, &e.savePresetModal, &e.licenceDialog };

    for (size_t i = 1; i < order.size(); ++i)
        EXPECT_LT (e.getIndexOfChildComponent (order[i - 1]), e.getIndexOfChildComponent (order[i])) << i;

    for (const auto* dialog : { order[2], order[3], order[4], order[5] })
    {
        EXPECT_FALSE (dialog->isVisible());
        EXPECT_EQ (dialog->getBounds(), e.getLocalBounds());
    }

    // A message that came without an editor shows with the next one.
    open.close();
    open.plugin.processor.toastManager.showError ("Lost");
    open.open();
    EXPECT_EQ (open.editor->toastManager->getParentComponent(), open.editor.get());
    EXPECT_TRUE (open.editor->toastManager->toasts[0]->isShowing());
    EXPECT_EQ (open.editor->toastManager->toasts[0]->getBounds(), (Rectangle<int> (10, 20, 1048, 50)));
}

TEST (OrvoEditor, FollowsRestoredStateAndLoadedPresets)
{
    using View = luna::SaturatorGraph::ViewMode;
    OpenEditor open;
    auto& processor = open.plugin.processor;

    juce::MemoryBlock before;
    processor.getStateInformation (before);

    ASSERT_TRUE (processor.presetManager.loadPreset (1));
    dispatchMessages();
    EXPECT_NEAR (open.editor->inputPanel.inGainSlider.slider.getValue(), 6.0, 1e-4);
    EXPECT_EQ (open.editor->singleEditor.graph.viewMode, View::amplitude);
    EXPECT_EQ (open.editor->lowBandEditor.graph.viewMode, View::amplitude)
        << "also in a layout that is not shown";
    EXPECT_EQ (open.editor->postEditor.graph.viewMode, View::decibels);
    open.close();
    open.open();
    EXPECT_EQ (open.editor->singleEditor.graph.viewMode, View::amplitude);

    std::thread (
        [&] {
        processor.setStateInformation (before.getData(), static_cast<int> (before.getSize()));
    }).join();
    dispatchMessages();
    EXPECT_NEAR (open.editor->inputPanel.inGainSlider.slider.getValue(), 0.0, 1e-4);
    EXPECT_EQ (open.editor->singleEditor.graph.viewMode, View::decibels);
}

TEST (OrvoEditor, FollowsSettingsOfOtherInstancesAndTheLicence)
{
    OpenEditor open;
    const auto settingsFile = open.config.file ("settings.settings");
    const juce::String text ("<PROPERTIES><VALUE name=\"scale\" val=\"1.5\"/>"
                             "<VALUE name=\"theme\" val=\"Night\"/></PROPERTIES>");
    settingsFile.replaceWithText (text);
    open.editor->settingsModal.fileListener.timerCallback();
    dispatchMessages();
    EXPECT_EQ (open.editor->settingsModal.scaleBox.getText(), "Bigger");
    EXPECT_FALSE (open.plugin.processor.settings.needsToBeSaved());
    EXPECT_EQ (settingsFile.loadFileAsString(), text);
    EXPECT_TRUE (open.editor->getTransform() == juce::AffineTransform::scale (1.5f));
    EXPECT_EQ (open.editor->lookAndFeel->lookAndFeel.themeName, "Night");

    // A file from a backup is older.
    settingsFile.replaceWithText (text.replace ("1.5", "0.75"));
    settingsFile.setLastModificationTime (juce::Time (2020, 1, 1, 0, 0));
    open.editor->settingsModal.fileListener.timerCallback();
    dispatchMessages();
    EXPECT_EQ (open.editor->settingsModal.scaleBox.getText(), "Small");

    // What is not saved yet is not lost to a newer file.
    open.plugin.processor.settings.setValue ("scale", 2.0);
    settingsFile.setLastModificationTime (juce::Time (2030, 1, 1, 0, 0));
    open.editor->settingsModal.fileListener.timerCallback();
    dispatchMessages();
    EXPECT_EQ (open.editor->settingsModal.scaleBox.getText(), "Massive");
    open.plugin.processor.settings.saveOrLog();

    // Without a window nothing watches the file.
    open.close();
    settingsFile.replaceWithText ("<PROPERTIES><VALUE name=\"scale\" val=\"0.5\"/><VALUE name=\"theme\" "
                                  "val=\"Ice\"/></PROPERTIES>");
    open.open();
    EXPECT_TRUE (open.editor->getTransform() == juce::AffineTransform::scale (0.5f));
    EXPECT_EQ (open.editor->lookAndFeel->lookAndFeel.themeName, "Ice");

    tessarin::LicenceManager::Status status;
    status.statusText = "Trial";
    open.plugin.processor.licenceManager.setStatus (status);
    dispatchMessages();
    EXPECT_EQ (open.editor->tooltipPanel.statusLabel.getText(), "Trial");
}

TEST (OrvoEditor, LeavesNobodyBehindWhenItCloses)
{
    OpenEditor open;
    auto& p = open.plugin.processor;
    juce::MemoryBlock state;
    p.getStateInformation (state);

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
        p.setStateInformation (state.getData(), static_cast<int> (state.getSize()));
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
    EXPECT_TRUE (open.editor->getTransform() == juce::AffineTransform::scale (2.0f));
    EXPECT_EQ (open.editor->topBar.presetBox.getText(), p.getProgramName (p.getCurrentProgram()));
}

namespace
{
/** What the window shows, with each of its overlays open once, but for what keeps the colours that its panel was
    given: curves, arcs and bands. */
std::vector<juce::Image> picturesOf (OpenEditor& open, int layout)
{
    auto& e = *open.editor;
    std::vector<juce::Image> pictures;
    open.set ("layout", layout);
    std::vector<juce::Rectangle<int>> ownColours { e.bandEditor.getBounds() };

    for (auto* panel : shownPanels (e))
    {
        ownColours.push_back (e.getLocalArea (&panel->graph, panel->graph.plot.expanded (2)));

        for (auto* knob : { &panel->thresholdSlider, &panel->shapeSlider, &panel->makeupSlider })
            ownColours.push_back (e.getLocalArea (&knob->slider, juce::Rectangle<int> (60, 68)));
    }

    const auto add = [&]
    {
        open.window->moveMouse (e, { 5, 5 });
        dispatchMessages();
        auto picture = open.pictureOf (e);

        for (const auto& area : ownColours)
            picture.clear (area);

        pictures.push_back (picture);
    };

    add();
    e.setPresetBrowserVisible (true);
    add();
    e.setPresetBrowserVisible (false);

    for (auto* dialog : std::initializer_list<juce::Component*> { &e.settingsModal, &e.savePresetModal })
    {
        dialog->setVisible (true);
        dialog->toFront (true);
        add();
        dialog->setVisible (false);
    }

    open.plugin.processor.toastManager.showToast ("Note", tessarin::toastNotice, true);
    add();
    open.plugin.processor.toastManager.toasts.clear();
    e.toastManager->setVisible (false);
    return pictures;
}
} // namespace

TEST (OrvoEditor, ShowsANewThemeEverywhereAtOnce)
{
    OpenEditor open;
    picturesOf (open, 0);
    std::vector<std::vector<juce::Image>> seen;

    for (const auto isFresh : { false, true })
    {
        if (isFresh)
        {
            open.close();
            open.open();
        }
        else
        {
            open.plugin.processor.settings.setValue ("theme", "Ice");
            dispatchMessages();
        }

        seen.emplace_back();

        for (auto layout = 0; layout < 4; ++layout)
            for (auto& picture : picturesOf (open, layout))
                seen.back().push_back (picture);
    }

    // A window that changed its theme looks like one that was opened with it.
    for (size_t i = 0; i < seen[0].size(); ++i)
        EXPECT_EQ (pixels::difference (seen[0][i], seen[1][i], seen[0][i].getBounds()),
                   juce::Rectangle<int>())
            << i;

    const auto& picture = seen[1][0];
    EXPECT_EQ (picture.getPixelAt (open.editor->outputPanel.getX() + 5, 700), juce::Colour (0xffdfdfdf))
        << "it is";

    // There was no hint in the strip.
    open.plugin.processor.settings.setValue ("theme", "Night");
    dispatchMessages();
    const auto& hint = open.editor->tooltipPanel.tooltipLabel;
    EXPECT_EQ (hint.findColour (juce::Label::textColourId),
               hint.findColour (luna::ColourIds::warningColourId));
}

TEST (OrvoEditor, ShowsAndHidesWhatLicensingLaysOverIt)
{
    OpenEditor open;
    const auto status = [&] (const char* overlay, const char* notice)
    {
        tessarin::LicenceManager::Status s;
        s.overlayText = overlay;
        s.noticeText = notice;
        open.plugin.processor.licenceManager.setStatus (s);
        dispatchMessages();
    };
    const auto clickLayout = [&] (int index)
    {
        open.window->clickMouse (*open.editor->inputPanel.layoutButtons.buttons[index], { 10, 10 });
        dispatchMessages();
        return open.plugin.get ("layout");
    };
    const auto look = [&] (int x, int y) { return open.window->render().getPixelAt (x, y); };
    const auto bar = look (300, 5), panel = open.editor->findColour (luna::ColourIds::panelColourId);

    // The button that is on stays on, and tells the host nothing more.
    GestureRecorder recorder (open.plugin.parameter ("layout"));
    EXPECT_EQ (clickLayout (2), 2.0);
    EXPECT_EQ (clickLayout (2), 2.0);
    EXPECT_TRUE (open.editor->inputPanel.layoutButtons.buttons[2]->getToggleState());
    EXPECT_EQ (recorder.events, (std::vector<std::string> { "begin", "=2", "end" }));

    // The notice stands below the top bar and lets the mouse through.
    status ("", "Trial");
    EXPECT_EQ (look (300, 5), bar);
    EXPECT_EQ (look (300, 45), panel);
    EXPECT_EQ (clickLayout (1), 1.0);

    // The overlay is over everything, also in a window that opens later.
    status ("Expired", "");
    open.close();
    open.open();
    EXPECT_EQ (look (300, 5), bar.overlaidWith (juce::Colour (0xbb000000)));
    EXPECT_EQ (clickLayout (3), 1.0);
    EXPECT_TRUE (open.editor->licenceDialog.isVisible());
    open.window->typeKey (juce::KeyPress (juce::KeyPress::escapeKey));

    status ("", "");
    EXPECT_EQ (look (300, 5), bar);
    EXPECT_NE (look (300, 45), panel);
    EXPECT_EQ (clickLayout (3), 3.0);
}

TEST (OrvoEditor, FollowsAChangeThatComesAtOnceAfterAnother)
{
    OpenEditor open;

    for (const auto& [layout, panel] : { std::pair { 2, &open.editor->sideChannelEditor },
                                         std::pair { 3, &open.editor->leftChannelEditor } })
    {
        // The first arrives, and the second comes before its 16 ms are over.
        open.plugin.set ("layout", 1);
        dispatchPosted();
        open.plugin.set ("layout", layout);
        EXPECT_TRUE (eventually ([&p = *panel] { return p.isVisible(); })) << layout;
        EXPECT_FALSE (open.editor->bandEditor.isVisible()) << layout;
    }
}

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
            plugin.processor.setStateInformation (state.getData(), static_cast<int> (state.getSize()));

        block.clear();
        plugin.process (block);

        // What is left of the processor, whatever a sanitizer makes of its speed: JUCE's queue is served to its end, and
        // has none for a host that leaves nothing.
        std::this_thread::sleep_for (10 * (Clock::now() - begin));
    }
}
} // namespace

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
    juce::MemoryBlock state;

    for (auto i = 0; i < numInstances; ++i)
    {
        plugins.push_back (std::make_unique<PluginUnderTest>());
        plugins.back()->processor.getStateInformation (state);
        hosts.emplace_back ([&, &plugin = *plugins.back(), s = state] { automate (plugin, s, isRunning); });
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
