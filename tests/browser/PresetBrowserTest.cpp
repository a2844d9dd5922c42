#include "browser/BrowserUnderTest.h"
#include "common/ColourIds.h"

namespace
{
/** What the browser shows at first, with the categories of each. */
const std::vector<std::pair<const char*, std::set<std::string>>> listed { { "Initial Patch", { "Tools" } },
                                                                          { "Deep", { "A", "B" } },
                                                                          { "Low", { "B" } },
                                                                          { "One", { "A", "C" } },
                                                                          { "Two", {} },
                                                                          { "Zed", { "A", "B", "C" } } };

TEST_F (Browser, FiltersByOneAndTwoCategoriesInAllFourStates)
{
    for (const auto& chosen : { Words {}, Words { "B" }, Words { "A", "C" } })
    {
        for (const auto& word : chosen)
            clickBadge (word);

        for (auto state = 0; state < 4; ++state)
        {
            const auto isHide = (state & 1) != 0, isAny = (state & 2) != 0;
            auto& mode = browser.modeToggle;
            auto& match = browser.matchToggle;
            window.clickMouse (isHide ? mode.right : mode.left, { 8, 10 });
            window.clickMouse (isAny ? match.right : match.left, { 8, 10 });
            EXPECT_NE (mode.left.selected, mode.right.selected);

            // The law in words: a preset matches if it has all of the filter's categories, or any of them.
            Words expected;

            for (const auto& [name, categories] : listed)
            {
                const auto has = [&own = categories] (const auto& word) { return own.contains (word); };
                const auto matches = isAny ? std::any_of (chosen.begin(), chosen.end(), has)
                                           : std::all_of (chosen.begin(), chosen.end(), has);

                if (chosen.empty() || matches != isHide)
                    expected.insert (name);
            }

            EXPECT_EQ (rows(), expected) << chosen.size() << " categories, state " << state;
        }

        if (! chosen.empty())
            clickBadge ("Tools", juce::ModifierKeys::rightButtonModifier);

        EXPECT_TRUE (browser.categories.getSelection().isEmpty()) << "a right click clears the whole filter";
        EXPECT_EQ (rows().size(), listed.size());
    }
}

TEST_F (Browser, ShowsAFolderWithItsSubfoldersAndLoadsWhatARowShows)
{
    EXPECT_EQ (rows().size(), listed.size()) << "the root at first";
    EXPECT_EQ (selected(), "Initial Patch");

    clickFolder (0);
    EXPECT_EQ (rows(), (Words { "Deep", "Initial Patch", "Low" }));
    clickFolder (1);
    EXPECT_EQ (rows(), (Words { "Low" })) << "it holds a subfolder only";
    EXPECT_EQ (selected(), "");
    clickFolder (2);
    EXPECT_EQ (rows(), (Words { "One", "Two", "Zed" }));

    clickRow (2);
    EXPECT_EQ (current(), "Zed");
    EXPECT_EQ (browser.display.getPreset().name, "Zed");
    EXPECT_EQ (selected(), "Zed");
    EXPECT_EQ (browser.table.getDescription(), "Zed");
    EXPECT_EQ (browser.display.getDescription(), "Zed. by Ann. Categories: A, B, C. Last");

    EXPECT_TRUE (opensMenu (1));
    EXPECT_EQ (selected(), "Zed") << "a right click loads nothing";

    clickFolder (20);
    EXPECT_EQ (rows().size(), listed.size()) << "a click below the folders";
    EXPECT_FALSE (browser.tree.treeView.getItemOnRow (2)->isSelected());
    clickFolder (2);
    EXPECT_EQ (rows(), (Words { "One", "Two", "Zed" })) << "so that the same can be chosen again";
}

TEST_F (Browser, SelectsWhatAHostHasRestoredWhenTheRowsChange)
{
    manager.selectByPath (config.preset ("User/One.tpre").getFullPathName());
    clickBadge ("A");
    EXPECT_EQ (selected(), "One");
    manager.selectByPath (config.preset ("User/Zed.tpre").getFullPathName());
    clickFolder (2);
    EXPECT_EQ (selected(), "Zed");
}

TEST_F (Browser, PicksARandomPresetAmongTheShownRowsUnlessItIsGone)
{
    clickBadge ("B");
    config.preset ("Factory/Bass/Sub/Low.tpre").deleteFile();
    manager.finishSaving (config.preset ("User/New.tpre"), manager.makePresetText ({}, {}, {}));
    ASSERT_EQ (browser.table.shownPresets.size(), 3) << "its row stays";
    Words picked;

    // Each of the two comes up but once in 10^30 runs.
    for (auto i = 0; i < 100; ++i)
    {
        manager.loadPreset (0);
        browser.randomButton.onClick();
        EXPECT_EQ (selected(), current());
        picked.insert (current());
    }

    EXPECT_EQ (picked, (Words { "Deep", "Zed" }));
}

TEST_F (Browser, DoesNothingWithoutRows)
{
    clickBadge ("B");
    clickBadge ("Tools");
    EXPECT_TRUE (rows().empty());
    EXPECT_EQ (browser.table.table.getNameForRow (0), "No presets found");
    EXPECT_TRUE (pixels::hasInk (window.render(), browser.table.getBounds().withSizeKeepingCentre (60, 30),
                                 shared.lookAndFeel.findColour (luna::ColourIds::backgroundColourId)))
        << "the table says so";

    clickRow (0);
    EXPECT_FALSE (opensMenu (0));
    browser.randomButton.onClick();

    for (const auto key : { juce::KeyPress::downKey, juce::KeyPress::upKey, juce::KeyPress::endKey,
                            juce::KeyPress::pageDownKey })
        press (key);

    EXPECT_EQ (current(), "Initial Patch");
    EXPECT_EQ (browser.table.table.getSelectedRow(), -1);
}

TEST_F (Browser, ReadsTheFoldersAgainWhenItIsShown)
{
    clickFolder (1);
    clickBadge ("B");
    browser.setVisible (false);
    browser.tree.treeView.getItemOnRow (1)->setOpen (true);
    const auto numFolders = browser.tree.treeView.getNumRowsInTree();
    config.addPreset ("Factory/Aaa.tpre", stateText ({}, "categories=\"New\""));
    config.addPreset ("Factory/Bass/Sub/Mid.tpre", stateText());
    manager.loadPresets();
    browser.setVisible (true);
    EXPECT_EQ (rows(), (Words { "Low", "Mid" }))
        << "the same folder, with the new indices and without a filter";
    juce::StringArray badges;

    for (const auto* badge : browser.categories.badges)
        badges.add (badge->text);

    EXPECT_EQ (badges.joinIntoString (" "), "A B C New Tools");
    EXPECT_TRUE (browser.tree.treeView.getItemOnRow (1)->isSelected());
    EXPECT_EQ (browser.tree.treeView.getNumRowsInTree(), numFolders) << "what was opened stays open";

    for (auto i = 0; i < 40; ++i)
        badges.add ("Category " + String (i));

    browser.categories.setCategories (badges);
    const auto* last = browser.categories.badges.getLast();
    EXPECT_FALSE (last->getBounds().isEmpty());
    EXPECT_TRUE (last->getParentComponent()->getLocalBounds().contains (last->getBounds()))
        << "one can scroll to it";
    manager.finishSaving (config.preset ("User/New.tpre"), stateText());
    EXPECT_EQ (rows(), (Words { "Low", "Mid" })) << "a save elsewhere leaves the folder chosen";
    config.preset ("User/New.tpre").deleteFile();

    browser.setVisible (false);
    config.preset ("Factory/Bass").deleteRecursively();
    manager.loadPresets();
    browser.setVisible (true);
    EXPECT_EQ (rows().size(), listed.size()) << "the root, since the folder is gone";

    // A save while it is open moves the indices; rows stay, and load what they show.
    manager.finishSaving (config.preset ("Factory/Abc.tpre"), stateText());
    EXPECT_EQ (browser.display.getPreset().name, "Abc");
    EXPECT_EQ (rows().size(), listed.size());
    EXPECT_EQ (selected(), "") << "the new preset has no row";
    clickRow (2);
    EXPECT_EQ (current(), "Deep");
}
} // namespace
