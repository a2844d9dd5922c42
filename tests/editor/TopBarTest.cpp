#include "editor/OpenEditor.h"
#include "support/FakeProgram.h"

#include <gtest/gtest.h>

#include <thread>
#include <tuple>

namespace
{
using juce::String;

struct TopBar : testing::Test
{
    void click (juce::Component& target) { window.clickMouse (target, target.getLocalBounds().getCentre()); }

    /** Of the five. */
    void expectShown (int index)
    {
        EXPECT_EQ (bar.presetBox.getText(), processor.getProgramName (index));
        EXPECT_EQ (processor.getCurrentProgram(), index);
        EXPECT_EQ (bar.previousButton.isEnabled(), index != 0) << index;
        EXPECT_EQ (bar.nextButton.isEnabled(), index != 4) << index;
    }

    String themeAfterClicks (int number, int keys = 0)
    {
        juce::ModifierKeys::currentModifiers = juce::ModifierKeys (keys);

        for (auto i = 0; i < number; ++i)
            window.clickMouse (bar, { i % 2 == 0 ? 50 : 250, 19 });

        juce::ModifierKeys::currentModifiers = {};
        return processor.settings.getValue ("theme", "Default");
    }

    TemporaryConfig config;
    const juce::File presets[4] { config.addPreset ("Factory/A Kick/One.tpre", stateText()),
                                  config.addPreset ("Factory/B Snare/Two.tpre", stateText()),
                                  config.addPreset ("User/Mine.tpre", stateText()),
                                  config.addPreset ("User/Sub/Deep.tpre", stateText()) };
    PluginUnderTest plugin;
    OrvoAudioProcessor& processor = plugin.processor;
    OrvoAudioProcessorEditor editor { processor };
    OffscreenWindow window { editor };
    tessarin::TopBar& bar = editor.topBar;
    const juce::OwnedArray<tessarin::Toast>& toasts = processor.toastManager.toasts;
};
} // namespace

TEST_F (TopBar, ListsThePresetsAndStepsThroughThemAcrossFolders)
{
    EXPECT_EQ (menuText (*bar.presetBox.getRootMenu()),
               "Initial Patch 1, A Kick { One 2 }, B Snare { Two 3 }, -, User { Mine 4, Sub { Deep 5 } }");

    for (const auto index : { 0, 1, 2, 3, 4, 4 })
    {
        click (index == 0 ? bar.previousButton : bar.nextButton);
        expectShown (index);
    }

    click (bar.previousButton);
    expectShown (3);
    bar.presetBox.setSelectedId (2, juce::sendNotificationSync);
    expectShown (1);

    // What others choose is shown too.
    processor.setCurrentProgram (4);
    expectShown (4);
    processor.presetManager.finishSaving (config.preset ("User/Zed.tpre"),
                                          processor.presetManager.makePresetText ({}, {}, {}));
    EXPECT_EQ (bar.presetBox.getText(), "Zed");
    EXPECT_TRUE (bar.previousButton.isEnabled() && bar.nextButton.isEnabled());
    EXPECT_TRUE (menuText (*bar.presetBox.getRootMenu()).endsWith ("User { Mine 4, Zed 5, Sub { Deep 6 } }"));
    EXPECT_EQ (bar.presetBox.getTextWhenNothingSelected(), "Select a preset");
}

TEST_F (TopBar, MarksAPresetThatIsNoLongerAsItWasLoaded)
{
    const auto expectMark = [&] (bool isChanged, const char* when)
    {
        const auto title = isChanged ? "Preset, changed" : "Preset";
        EXPECT_TRUE (eventually ([&] { return bar.presetBox.getTitle() == title; })) << when;
        EXPECT_EQ (bar.presetBox.getText(), processor.presetManager.getCurrentPreset().name);
        return window.render().getClippedImage (
            editor.getLocalArea (&bar.presetBox, bar.presetBox.getLocalBounds()));
    };

    const auto plain = expectMark (false, "at the start");
    std::thread ([&] { plugin.set ("in_gain", 3.0); }).join();
    const auto mark = pixels::difference (plain, expectMark (true, "after the host's automation"));
    const auto end =
        7 + juce::GlyphArrangement::getStringWidthInt (juce::FontOptions (14.0f), "Initial Patch");
    EXPECT_TRUE (juce::Rectangle<int> (end, 3, 10, 12).contains (mark) && ! mark.isEmpty())
        << mark.toString();
    const auto changed = plugin.capture();
    plugin.set ("in_gain", 0.0);
    expectMark (false, "put back");
    plugin.set ("mode_single", 3.0);
    processor.presetManager.loadPreset (1);
    expectMark (false, "after a load");
    plugin.set ("mode_single", 3.0);
    processor.presetManager.finishSaving (config.preset ("User/Zed.tpre"),
                                          processor.presetManager.makePresetText ({}, {}, {}));
    expectMark (false, "saved");
    plugin.restore (changed);
    expectMark (true, "a project with a changed one");
    OrvoAudioProcessorEditor second { processor };
    EXPECT_EQ (second.topBar.presetBox.getTitle(), "Preset, changed") << "in a window that opens later";
    processor.presetManager.loadPreset (1);
    plugin.restore (plugin.capture());
    expectMark (false, "a project with one as it is");
    presets[1].deleteFile();
    processor.presetManager.loadPreset (2);
    bar.refreshPresetDisplay();
    expectMark (true, "which cannot be read");
}

TEST_F (TopBar, StandsInTheMiddleOfItsBarWithTheNameAtTheLeft)
{
    for (const auto hasLicence : { true, false })
    {
        plugin.setLicence ([&] (auto& status) { status.showLicenceButton = hasLicence; });
        dispatchMessages();
        EXPECT_EQ (bar.licenceButton.isVisible(), hasLicence);

        // With the widths and the gaps behind them.
        std::vector<std::tuple<juce::Component*, int, int>> items { { &bar.presetBrowserButton, 25, 5 },
                                                                    { &bar.presetBox, 183, 11 },
                                                                    { &bar.previousButton, 25, 1 },
                                                                    { &bar.nextButton, 25, 1 },
                                                                    { &bar.saveButton, 25, 12 },
                                                                    { &bar.manualButton, 25, 1 },
                                                                    { &bar.updateButton, 25,
                                                                      hasLicence ? 1 : 12 },
                                                                    { &bar.licenceButton, 25, 12 },
                                                                    { &bar.settingsButton, 25, 0 } };

        if (! hasLicence)
            items.erase (items.end() - 2);

        auto x = 534.0;

        for (const auto& [component, itemWidth, margin] : items)
            x -= 0.5 * (itemWidth + margin);

        for (const auto& [component, itemWidth, margin] : items)
        {
            EXPECT_NEAR (component->getX(), x, 0.5) << component->getTitle();
            EXPECT_EQ (component->getBounds().withX (0), juce::Rectangle<int> (0, 9, itemWidth, 20));
            x += itemWidth + margin;
        }
    }

    EXPECT_EQ (bar.bypassButton.getBounds(), juce::Rectangle<int> (1028, 9, 25, 20));
    EXPECT_TRUE (pixels::showsText (window.render(), { 20, 2, 136, 34 }, "Orvo", { 20, 0, 136, 38 },
                                    juce::Font (juce::FontOptions (16.0f)), juce::Colours::white,
                                    juce::Colour (0xff32363a), juce::Justification::centredLeft, true));
}

TEST_F (TopBar, GoesOnFromThePresetThatAHostRestores)
{
    const auto& table = editor.presetBrowser.table;
    click (bar.presetBrowserButton);
    std::vector<juce::MemoryBlock> states;

    for (auto index = 0; index < 5; ++index)
    {
        processor.presetManager.loadPreset (index);
        states.push_back (plugin.capture());
    }

    // As a host compares two states, from a thread of its own and from the window's.
    for (const auto& [index, ownThread] : { std::pair { 2, true }, { 0, false }, { 4, true }, { 1, true } })
    {
        const auto restore = [&, &state = states[static_cast<size_t> (index)]] { plugin.restore (state); };
        ownThread ? std::thread (restore).join() : restore();
        dispatchMessages();
        expectShown (index);
        EXPECT_EQ (table.shownPresets[table.table.getSelectedRow()].index, index);
        EXPECT_EQ (editor.presetBrowser.display.getPreset().index, index);
    }

    window.typeKey (juce::KeyPress (juce::KeyPress::downKey));
    EXPECT_EQ (processor.getCurrentProgram(), 2);
    bar.presetBox.setSelectedId (2, juce::sendNotificationSync);
    EXPECT_EQ (processor.getCurrentProgram(), 1);
}

TEST_F (TopBar, ChangesTheThemeWithTenClicksOrShift)
{
    EXPECT_EQ (themeAfterClicks (9), "Default");
    EXPECT_EQ (themeAfterClicks (1), "Ice");
    EXPECT_EQ (editor.lookAndFeel->lookAndFeel.themeName, "Ice");
    EXPECT_TRUE (config.file ("settings.settings").loadFileAsString().contains ("Ice"));

    for (const auto* next : { "Night", "TwentyTwenty", "Default" })
    {
        themeAfterClicks (4);
        EXPECT_EQ (themeAfterClicks (1, juce::ModifierKeys::shiftModifier), next) << "starts the count anew";
    }

    processor.settings.setValue ("theme", "Light");
    EXPECT_EQ (themeAfterClicks (10), "Default");

    config.file ("settings.settings").deleteFile();
    config.file ("settings.settings").createDirectory();
    EXPECT_EQ (themeAfterClicks (10), "Ice") << "in force";
    EXPECT_TRUE (config.log().contains ("Unable to save the custom settings..."));
}

TEST_F (TopBar, OpensTheManualOrTellsWhereItShouldBe)
{
    const FakeProgram viewer ("xdg-open", config.file ("bin"));
    const auto manual = config.file ("Orvo Manual 1.0.1.pdf");

    click (bar.manualButton);
    ASSERT_EQ (toasts.size(), 2);
    EXPECT_EQ (toasts[0]->text, "ERROR: Sorry, we can't find the manual. Please reinstall the plugin.");
    EXPECT_EQ (toasts[1]->text, manual.getFullPathName());

    manual.create();
    bar.buttonClicked (&bar.manualButton);
    EXPECT_EQ (viewer.readLastArgument(), manual.getFullPathName());
    EXPECT_EQ (toasts.size(), 2) << "no further one";
}

TEST_F (TopBar, ClosesTheBrowserForAllButItselfAndTheSteps)
{
    const auto expectBrowser = [&] (bool isOpen, juce::Button& button)
    {
        EXPECT_EQ (editor.presetBrowser.isVisible(), isOpen) << button.getTooltip();
        EXPECT_EQ (bar.presetBrowserButton.getToggleState(), isOpen) << button.getTooltip();
    };

    for (auto& [button, dialog] : std::initializer_list<std::pair<juce::Button&, juce::Component&>> {
             { bar.saveButton, editor.savePresetModal }, { bar.settingsButton, editor.settingsModal } })
    {
        click (bar.presetBrowserButton);

        for (auto* step : { &bar.nextButton, &bar.previousButton })
        {
            click (*step);
            expectBrowser (true, *step);
        }

        click (button);
        expectBrowser (false, button);
        EXPECT_TRUE (dialog.isVisible());
        window.typeKey (juce::KeyPress (juce::KeyPress::escapeKey));
        EXPECT_FALSE (dialog.isVisible()) << "it had the keyboard";
    }

    plugin.setLicence ([] (auto& status) { status.saveRefusal = "Saving needs a licence"; });
    click (bar.saveButton);
    EXPECT_FALSE (editor.savePresetModal.isVisible());
    EXPECT_EQ (toasts.getLast()->text, "Saving needs a licence");
}

TEST_F (TopBar, SwitchesTheBypassBothWaysAndChecksForNoUpdates)
{
    for (const auto value : { 0.0, 1.0 })
    {
        click (bar.bypassButton);
        EXPECT_EQ (plugin.get ("enable"), value);
        EXPECT_EQ (bar.bypassButton.getToggleState(), value > 0.5);
    }

    plugin.set ("enable", 0.0);
    dispatchMessages();
    EXPECT_FALSE (bar.bypassButton.getToggleState());

    bar.sendSynchronousChangeMessage();
    EXPECT_FALSE (bar.updateButton.isEnabled());
}
