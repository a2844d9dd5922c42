#include "presets/PresetBrowser.h"

#include "common/ColourIds.h"
#include "core/OrvoAudioProcessor.h"
#include "OffscreenWindow.h"
#include "settings/TessarinLookAndFeel.h"
#include "settings/ThemeResolver.h"
#include "support/FakeProgram.h"
#include "support/Messages.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace
{
using juce::KeyPress;
using juce::String;
using Words = std::set<std::string>;

/** A preset of the fixture; its list index is its place in `listed`. */
struct Listed
{
    const char* name;
    Words categories;
};

const std::vector<Listed> listed { { "Initial Patch", { "Tools" } },
                                   { "Deep", { "A", "B" } },
                                   { "Low", { "B" } },
                                   { "One", { "A", "C" } },
                                   { "Two", {} },
                                   { "Zed", { "A", "B", "C" } } };

struct Frame : juce::Component
{
    Frame() { setSize (977, 732); }
};

class Browser : public testing::Test
{
protected:
    Browser()
    {
        content.addChildComponent (browser);
        browser.setBounds (content.getLocalBounds());
        browser.setVisible (true);
    }

    static std::unique_ptr<OrvoAudioProcessor> start (const TemporaryConfig& config)
    {
        const auto add = [&config] (const char* path, const char* categories)
        { config.addPreset (path, stateText ({}, String ("categories=\"") + categories + "\"")); };

        add ("Factory/Deep.tpre", "B,A");
        add ("Factory/Bass/Sub/Low.tpre", "B");
        add ("User/One.tpre", "A, ,C,");
        add ("User/Two.tpre", "");
        add ("User/Zed.tpre", R"(C,B,A" author="Ann" description="Last)");
        return std::make_unique<OrvoAudioProcessor>();
    }

    /** The rows' names, each with the preset that the list has for the row's index. */
    Words rows() const
    {
        Words names;

        for (const auto& preset : browser.table.shownPresets)
        {
            EXPECT_EQ (preset.name, manager.getPresets()[preset.index].name);
            names.insert (preset.name.toStdString());
        }

        EXPECT_EQ (static_cast<int> (names.size()), browser.table.shownPresets.size());
        return names;
    }

    std::string current() const { return manager.getCurrentPreset().name.toStdString(); }

    std::string selected() const
    {
        const auto row = browser.table.table.getSelectedRow();
        return row < 0 ? "" : browser.table.shownPresets[row].name.toStdString();
    }

    void clickRow (int row, int button = juce::ModifierKeys::leftButtonModifier)
    {
        auto& table = browser.table.table;
        window.clickMouse (table, { 50, table.getHeaderHeight() + 22 * row + 11 }, button);
    }

    /** Whether a right click there opens a menu, which is closed again. */
    bool opensMenu (int row)
    {
        clickRow (row, juce::ModifierKeys::rightButtonModifier);
        const auto isOpen = juce::ModalComponentManager::getInstance()->getNumModalComponents() > 0;
        juce::PopupMenu::dismissAllActiveMenus();
        dispatchMessages();
        return isOpen;
    }

    /** Once the tree has laid out its rows, which it does in a message of its own. */
    void clickFolder (int row)
    {
        dispatchMessages();
        window.clickMouse (browser.tree.treeView, { 60, 22 * row + 11 });
    }

    void clickBadge (const String& text, int button = juce::ModifierKeys::leftButtonModifier)
    {
        for (auto* badge : browser.categories.badges)
            if (badge->text == text)
                window.clickMouse (*badge, { 8, 10 }, button);
    }

    void press (int key)
    {
        browser.table.grabKeyboardFocus();
        window.typeKey (KeyPress (key));
    }

    TemporaryConfig config;
    tessarin::DLAF shared;
    std::unique_ptr<OrvoAudioProcessor> processor = start (config);
    tessarin::PresetManager& manager = processor->presetManager;
    Frame content;
    tessarin::PresetBrowser browser { manager };
    OffscreenWindow window { content };
};

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
}

TEST_F (Browser, GoesOnFromAPresetThatCannotBeLoaded)
{
    clickFolder (2);
    clickRow (2);

    config.preset ("User/One.tpre").deleteFile();
    config.preset ("User/Two.tpre").replaceWithText ("<");

    const auto expectSelected = [&] (const char* name)
    {
        EXPECT_EQ (selected(), name);
        EXPECT_EQ (current(), name);
        EXPECT_EQ (browser.display.getPreset().name, "Zed") << "the details stay";
    };

    clickRow (0);
    expectSelected ("One");

    for (const auto& [key, name] :
         { std::pair { KeyPress::downKey, "Two" }, { KeyPress::downKey, "Zed" }, { KeyPress::upKey, "Two" } })
    {
        press (key);
        expectSelected (name);
    }

    config.preset ("User/Zed.tpre").deleteFile();

    for (auto i = 0; i < 20; ++i)
    {
        browser.randomButton.onClick();
        expectSelected (current().c_str());
    }
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

TEST_F (Browser, RevealsTheFolderOfARowsFile)
{
    const FakeProgram files ("xdg-open", config.file ("bin"));
    clickRow (2, juce::ModifierKeys::rightButtonModifier);
    window.typeKey (KeyPress (KeyPress::downKey));
    window.typeKey (KeyPress (KeyPress::returnKey));
    dispatchMessages();
    EXPECT_EQ (files.readLastArgument(), config.preset ("Factory/Bass/Sub").getFullPathName());
}

TEST_F (Browser, NarrowsBelow700Pixels)
{
    for (const auto& [width, display, random] : { std::tuple { 699, 150, 130 }, { 700, 200, 180 } })
    {
        browser.setSize (width, 500);
        EXPECT_EQ (browser.display.getWidth(), display);
        EXPECT_EQ (browser.randomButton.getWidth(), random);
    }
}

TEST_F (Browser, StepsThroughTheRowsByKeysAndStopsAtTheEnds)
{
    const std::vector<std::pair<int, const char*>> steps {
        { KeyPress::upKey, "Initial Patch" },
        { KeyPress::downKey, "Deep" },
        { KeyPress::downKey, "Low" },
        { KeyPress::upKey, "Deep" },
        { KeyPress::endKey, "Zed" },
        { KeyPress::downKey, "Zed" },
        { KeyPress::upKey, "Two" },
        { KeyPress::leftKey, "Two" },
        { KeyPress::pageUpKey, "Initial Patch" },
        { KeyPress::pageDownKey, "Zed" },
        { KeyPress::homeKey, "Initial Patch" },
    };

    for (const auto& [key, name] : steps)
    {
        press (key);
        EXPECT_EQ (current(), name);
        EXPECT_EQ (selected(), name);
    }
}

TEST_F (Browser, PicksARandomPresetAmongTheShownRowsOnly)
{
    clickBadge ("B");
    Words picked;

    // Each of the three comes up but once in 10^17 runs.
    for (auto i = 0; i < 100; ++i)
    {
        browser.randomButton.onClick();
        EXPECT_EQ (selected(), current());
        picked.insert (current());
    }

    EXPECT_EQ (picked, rows());
}

TEST_F (Browser, PicksNoRandomPresetThatIsGone)
{
    clickBadge ("C");
    config.preset ("User/One.tpre").deleteFile();
    manager.finishSaving (config.preset ("User/New.tpre"), manager.makePresetText ({}, {}, {}));
    ASSERT_EQ (browser.table.shownPresets.size(), 2) << "its row stays";

    for (auto i = 0; i < 60; ++i)
    {
        manager.loadPreset (0);
        browser.randomButton.onClick();
        EXPECT_EQ (current(), "Zed");
    }
}

TEST_F (Browser, DoesNothingWithoutRows)
{
    clickBadge ("B");
    clickBadge ("Tools");
    EXPECT_TRUE (rows().empty());
    EXPECT_EQ (browser.table.table.getNameForRow (0), "No presets found");
    const auto background = shared.lookAndFeel.findColour (luna::ColourIds::backgroundColourId);
    const auto centre = browser.table.getBounds().withSizeKeepingCentre (60, 30);
    auto writtenPixels = 0;

    const auto image = window.render();

    for (auto y = centre.getY(); y < centre.getBottom(); ++y)
        for (auto x = centre.getX(); x < centre.getRight(); ++x)
            writtenPixels += image.getPixelAt (x, y) != background ? 1 : 0;

    EXPECT_GT (writtenPixels, 0) << "the table says so";

    clickRow (0);
    EXPECT_FALSE (opensMenu (0));
    browser.randomButton.onClick();

    for (const auto key : { KeyPress::downKey, KeyPress::upKey, KeyPress::endKey, KeyPress::pageDownKey })
        press (key);

    EXPECT_EQ (current(), "Initial Patch");
    EXPECT_EQ (browser.table.table.getSelectedRow(), -1);
}

TEST_F (Browser, ReadsTheFoldersAgainWhenItIsShown)
{
    clickFolder (1);
    browser.setVisible (false);
    config.addPreset ("Factory/Aaa.tpre", stateText ({}, "categories=\"New\""));
    config.addPreset ("Factory/Bass/Sub/Mid.tpre", stateText());
    manager.loadPresets();
    browser.setVisible (true);
    EXPECT_EQ (rows(), (Words { "Low", "Mid" })) << "the same folder, with the new indices";
    EXPECT_EQ (browser.categories.badges.size(), 5);
    EXPECT_TRUE (browser.tree.treeView.getItemOnRow (1)->isSelected());

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

    // The table stays where it is scrolled to, and the keys pass a preset that is gone.
    browser.setSize (977, 150);
    press (KeyPress::endKey);
    auto& view = *browser.table.table.getViewport();
    view.setViewPosition (0, 0);
    config.preset ("User/Two.tpre").deleteFile();
    manager.finishSaving (config.preset ("Factory/Abb.tpre"), stateText());
    EXPECT_EQ (view.getViewPositionY(), 0);
    manager.loadPreset (5);
    EXPECT_EQ (selected(), "One");
    press (KeyPress::downKey);
    EXPECT_EQ (selected(), "Zed");
    press (KeyPress::upKey);
    EXPECT_EQ (selected(), "One");
}

TEST_F (Browser, HasABadgeForEachCategoryButTheEmptyOne)
{
    juce::StringArray texts;

    for (const auto* badge : browser.categories.badges)
        texts.add (badge->text);

    EXPECT_EQ (texts, (juce::StringArray { "A", "B", "C", "Tools" }));
    EXPECT_EQ (browser.categories.badges[1]->getTooltip(),
               "Category Filter: Show only presets with a category of 'B'. Multiple filters can be selected. "
               "Right click to clear filters.");
}

TEST_F (Browser, KeepsWhiteLegibleOnItsBadgesInAllThemes)
{
    // WCAG 2.1: contrast to white is 1.05 over the luminance plus 0.05.
    const auto contrastToWhite = [] (juce::Colour colour)
    {
        const auto linear = [] (float c)
        { return std::pow ((static_cast<double> (c) + 0.055) / 1.055, 2.4); };
        return 1.05
               / (0.05 + 0.2126 * linear (colour.getFloatRed()) + 0.7152 * linear (colour.getFloatGreen())
                  + 0.0722 * linear (colour.getFloatBlue()));
    };

    auto& badge = *browser.categories.badges[0];
    const auto fillAt = content.getLocalPoint (&badge, juce::Point<int> (4, 10));

    for (const auto& theme : tessarin::ThemeResolver::getEmbeddedThemeNames())
    {
        shared.lookAndFeel.setTheme (theme);

        for (const auto isSelected : { false, true })
        {
            badge.setSelected (isSelected, juce::dontSendNotification);
            window.moveMouse (content, { 300, 300 });
            const auto atRest = window.render().getPixelAt (fillAt.x, fillAt.y);
            window.moveMouse (badge, { 8, 10 });
            const auto underMouse = window.render().getPixelAt (fillAt.x, fillAt.y);

            EXPECT_GE (contrastToWhite (underMouse), 4.5) << theme << isSelected;
            EXPECT_GT (contrastToWhite (atRest), contrastToWhite (underMouse)) << "brighter under the mouse";
        }
    }
}
} // namespace
