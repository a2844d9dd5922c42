#include "common/ColourIds.h"
#include "editor/OpenEditor.h"

#include <gtest/gtest.h>

#include <thread>
#include <tuple>

using juce::Rectangle;

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
        const auto shown = open.shownPanels();
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

TEST (OrvoEditor, FollowsRestoredStateAndLoadedPresets)
{
    using View = luna::SaturatorGraph::ViewMode;
    OpenEditor open;
    auto& processor = open.plugin.processor;

    const auto before = open.plugin.capture();
    ASSERT_TRUE (processor.presetManager.loadPreset (1));
    dispatchMessages();
    EXPECT_NEAR (open.editor->inputPanel.inGainSlider.slider.getValue(), 6.0, 1e-4);
    EXPECT_EQ (open.editor->singleEditor.graph.viewMode, View::amplitude);
    EXPECT_EQ (open.editor->lowBandEditor.graph.viewMode, View::amplitude)
        << "also in a layout that is not shown";
    EXPECT_EQ (open.editor->postEditor.graph.viewMode, View::decibels);
    open.reopen();
    EXPECT_EQ (open.editor->singleEditor.graph.viewMode, View::amplitude);

    std::thread ([&] { open.plugin.restore (before); }).join();
    dispatchMessages();
    EXPECT_NEAR (open.editor->inputPanel.inGainSlider.slider.getValue(), 0.0, 1e-4);
    EXPECT_EQ (open.editor->singleEditor.graph.viewMode, View::decibels);
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
    open.reopen();
    EXPECT_EQ (look (300, 5), bar.overlaidWith (juce::Colour (0xbb000000)));
    EXPECT_EQ (clickLayout (3), 1.0);
    EXPECT_TRUE (open.editor->licenceDialog.isVisible());
    open.window->typeKey (juce::KeyPress (juce::KeyPress::escapeKey));

    status ("", "");
    EXPECT_EQ (look (300, 5), bar);
    EXPECT_NE (look (300, 45), panel);
    EXPECT_EQ (clickLayout (3), 3.0);
}
