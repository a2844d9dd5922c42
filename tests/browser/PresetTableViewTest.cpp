#include "browser/BrowserUnderTest.h"

#include <tuple>

namespace
{
using juce::KeyPress;

TEST_F (Browser, StepsThroughTheRowsByKeysAndStopsAtTheEnds)
{
    expectSteps ({ { KeyPress::upKey, "Initial Patch" },
                   { KeyPress::downKey, "Deep" },
                   { KeyPress::downKey, "Low" },
                   { KeyPress::upKey, "Deep" },
                   { KeyPress::endKey, "Zed" },
                   { KeyPress::downKey, "Zed" },
                   { KeyPress::upKey, "Two" },
                   { KeyPress::leftKey, "Two" },
                   { KeyPress::homeKey, "Initial Patch" } });
}

TEST_F (Browser, JumpsToTheNameThatIsTyped)
{
    for (const auto* name : { "Tom", "Twist 2", "Two step" })
        config.addPreset (String ("User/") + name + ".tpre", stateText());

    manager.loadPresets();
    showAgain();
    juce::uint32 time = 0;
    browser.table.typedName.getMillisecondCounter = [&time] { return time; };
    press (KeyPress::homeKey);

    // Each by the time since the key before: a name goes on within a second, and from the last round to the first.
    for (const auto& [pause, letter, name] : { std::tuple { 5000, 't', "Tom" },
                                               { 300, 'W', "Twist 2" },
                                               { 1000, 'o', "Two" },
                                               { 1001, 't', "Two step" },
                                               { 300, 't', "Tom" },
                                               { 300, 't', "Twist 2" },
                                               { 1001, 'd', "Deep" },
                                               { 1001, 'x', "Deep" },
                                               { 1001, 'd', "Deep" } })
    {
        time += static_cast<juce::uint32> (pause);
        const auto isUsed =
            window.getPeer()->handleKeyPress (KeyPress (letter, 0, static_cast<juce::juce_wchar> (letter)));
        EXPECT_TRUE (isUsed) << letter;
        EXPECT_EQ (current(), name) << letter;
    }

    // What is not for names goes on to the host.
    for (const auto& key : { KeyPress (' ', 0, ' '), KeyPress ('-', 0, '-'),
                             KeyPress ('t', juce::ModifierKeys::ctrlModifier, 0) })
        EXPECT_FALSE (window.getPeer()->handleKeyPress (key)) << key.getTextDescription();
}

TEST_F (Browser, TurnsAPageByKeys)
{
    for (auto i = 0; i < 80; ++i)
        config.addPreset ("User/Many/P" + String (i + 10) + ".tpre", stateText());

    manager.loadPresets();
    showAgain();
    press (KeyPress::homeKey);
    const auto page = (browser.table.getHeight() - 22) / 22 - 1;

    // Six rows come before those.
    const auto nameOf = [] (int row) { return (String ("P") + String (row + 4)).toStdString(); };
    expectSteps ({ { KeyPress::pageDownKey, nameOf (page) },
                   { KeyPress::pageDownKey, nameOf (2 * page) },
                   { KeyPress::upKey, nameOf (2 * page - 1) },
                   { KeyPress::pageUpKey, nameOf (page - 1) } });

    // A click that chooses nothing leaves the table where it is scrolled to.
    auto& view = *browser.table.table.getViewport();
    view.setViewPosition (0, 40 * 22);
    EXPECT_TRUE (opensMenu (1));
    EXPECT_EQ (view.getViewPositionY(), 40 * 22);
}

TEST_F (Browser, GoesOnFromAPresetThatCannotBeLoaded)
{
    clickFolder (2);
    clickRow (2);
    config.preset ("User/One.tpre").deleteFile();
    config.preset ("User/Two.tpre").replaceWithText ("<");
    clickRow (0);
    EXPECT_EQ (selected(), "One");
    EXPECT_EQ (current(), "One");

    expectSteps ({ { KeyPress::downKey, "Two" }, { KeyPress::downKey, "Zed" }, { KeyPress::upKey, "Two" } });
    EXPECT_EQ (browser.display.getPreset().name, "Zed") << "the details stay";
}

TEST_F (Browser, StepsOverAPresetThatIsGoneFromWhereOthersHaveMovedTo)
{
    // The table stays where it is scrolled to.
    browser.setSize (977, 150);
    press (KeyPress::endKey);
    auto& view = *browser.table.table.getViewport();
    view.setViewPosition (0, 0);
    config.preset ("User/Two.tpre").deleteFile();
    manager.finishSaving (config.preset ("Factory/Abb.tpre"), stateText());
    EXPECT_EQ (view.getViewPositionY(), 0);
    manager.loadPreset (4);
    EXPECT_EQ (selected(), "One");
    expectSteps ({ { KeyPress::downKey, "Zed" }, { KeyPress::upKey, "One" } });
}
} // namespace
