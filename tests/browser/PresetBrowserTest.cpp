#include "browser/PresetBrowser.h"

#include "common/ColourIds.h"
#include "core/OrvoAudioProcessor.h"
#include "look/TessarinLookAndFeel.h"
#include "look/ThemeResolver.h"
#include "OffscreenWindow.h"
#include "support/Messages.h"
#include "support/TemporaryConfig.h"
#include "widgets/Pixels.h"
#include "widgets/TooltipPanel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <tuple>

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

        config.addPreset ("Factory/Bass/Sub/_description.txt", "For the low end");
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
    EXPECT_FALSE (browser.tree.treeView.getItemOnRow (2)->isSelected());
    clickFolder (2);
    EXPECT_EQ (rows(), (Words { "One", "Two", "Zed" })) << "so that the same can be chosen again";
}

TEST_F (Browser, ShowsEachFieldOfAPresetInItsPlace)
{
    using juce::Rectangle;
    const juce::Colour strong (0xffeeeeee), faint (0xffb5b5b5), ground (0xff141516);
    const juce::Font font (juce::FontOptions (14.0f));
    clickFolder (2);
    clickRow (2);
    clickFolder (20);
    clickRow (0);
    window.moveMouse (content, { 5, 725 });
    const auto image = window.render();
    const auto& table = browser.table.table;
    const auto& header = table.getHeader();
    const std::vector<std::pair<const char*, const char*>> columns {
        { "Name", "Zed" }, { "Author", "Ann" }, { "Categories", "A, B, C" }, { "Description", "Last" }
    };

    for (auto i = 0; i < 4; ++i)
    {
        const auto& [title, text] = columns[static_cast<size_t> (i)];
        EXPECT_EQ (header.getColumnIdOfIndex (i, true), i + 2);
        EXPECT_EQ (header.getColumnName (i + 2), title);
        const auto cell = content.getLocalArea (&table, table.getCellPosition (i + 2, 5, true));
        EXPECT_TRUE (pixels::showsText (image, cell.withTrimmedRight (1), text,
                                        cell.withTrimmedLeft (4).withTrimmedRight (4), font, strong, ground,
                                        juce::Justification::centredLeft))
            << title;
    }

    // A column that can be made wider has a line at its right end. The last one has none.
    const auto headerArea = content.getLocalArea (&header, header.getLocalBounds());
    for (auto i = 0; i < 4; ++i)
    {
        const auto end = header.getColumnPosition (i).getRight() - 1;
        const auto line = image.getPixelAt (headerArea.getX() + end, headerArea.getCentreY());
        EXPECT_EQ (line == image.getPixelAt (headerArea.getX() + end - 3, headerArea.getCentreY()), i == 3)
            << i;
    }

    // The name's lines are 19 high, all others 14; the gaps are 5 within a group and 15 between two.
    clickRow (5);
    const auto details = window.render();
    const auto area = browser.display.getBounds().reduced (10);
    auto y = area.getY();

    for (const auto& [text, height, colour, gap] : { std::tuple { "Zed", 19, strong, 5 },
                                                     { "by Ann", 14, faint, 15 },
                                                     { "Categories", 14, faint, 5 },
                                                     { "A, B, C", 14, strong, 15 },
                                                     { "Description", 14, faint, 5 },
                                                     { "Last", 14, strong, 15 } })
    {
        const auto line = area.withY (y).withHeight (height);
        EXPECT_TRUE (pixels::showsText (details, line, text, line,
                                        juce::Font (juce::FontOptions (static_cast<float> (height))), colour,
                                        ground, juce::Justification::topLeft))
            << text;
        y += height + gap;
    }

    // Two lines of authors move what stands below.
    auto preset = browser.display.getPreset();
    preset.author = "Ann, Ben, Cleo, Dan, Eve, Finn, Gus, Hal, Ida";
    browser.display.setPreset (preset);
    const auto line = area.withY (area.getY() + 19 + 5 + 2 * 14 + 15).withHeight (14);
    EXPECT_TRUE (pixels::showsText (window.render(), line, "Categories", line, font, faint, ground,
                                    juce::Justification::topLeft));

    // The folder's text is that of the file beside its presets.
    luna::TooltipPanel strip;

    for (const auto& [row, text] : { std::pair { 1, "For the low end" }, { 2, "" } })
    {
        window.moveMouse (browser.tree.treeView, { 60, 22 * row + 11 });
        EXPECT_TRUE (eventually ([&, t = text] { return strip.tooltipLabel.getText() == t; })) << text;
    }
}

TEST_F (Browser, ShowsWhatIsChosenAtOnce)
{
    const auto pictureOf = [this] (juce::Component& badge)
    {
        return window.render()
            .getClippedImage (content.getLocalArea (&badge, badge.getLocalBounds()))
            .createCopy();
    };
    const auto areSame = [] (const auto& a, const auto& b)
    { return pixels::difference (a, b, a.getBounds()).isEmpty(); };
    const auto& badges = browser.categories.badges;
    std::vector<juce::Component*> all { &browser.modeToggle.right, &browser.matchToggle.right };
    all.insert (all.begin(), badges.begin(), badges.end());
    const auto untouched = pictureOf (*badges[0]);

    auto& rowsOfTable = browser.table.table;
    const auto unhovered = pictureOf (rowsOfTable);
    window.moveMouse (rowsOfTable, { 50, rowsOfTable.getHeaderHeight() + 33 });
    EXPECT_FALSE (areSame (pictureOf (rowsOfTable), unhovered));
    window.moveMouse (content, { 5, 725 });
    EXPECT_TRUE (areSame (pictureOf (rowsOfTable), unhovered)) << "the row that the mouse has left";

    for (auto* badge : all)
    {
        const auto before = pictureOf (*badge);
        window.moveMouse (*badge, { 8, 10 });
        const auto lit = pictureOf (*badge);
        EXPECT_FALSE (areSame (lit, before));
        window.clickMouse (*badge, { 8, 10 });
        EXPECT_FALSE (areSame (pictureOf (*badge), lit)) << "while the mouse rests on it";
    }

    EXPECT_FALSE (areSame (pictureOf (*badges[0]), untouched));
    clickBadge ("Tools", juce::ModifierKeys::rightButtonModifier);
    EXPECT_TRUE (areSame (pictureOf (*badges[0]), untouched)) << "cleared from another";
    window.pressMouse (*badges[0], { 8, 10 });
    window.dragMouse (*badges[0], { 8, 60 });
    window.releaseMouse();
    EXPECT_TRUE (browser.categories.getSelection().isEmpty()) << "the mouse left before the release";
    browser.setVisible (false);
    browser.setVisible (true);
    EXPECT_TRUE (browser.categories.getSelection().isEmpty()) << "the badges are new";
    EXPECT_TRUE (browser.modeToggle.right.selected) << "the options are not";
}

TEST_F (Browser, TurnsAPageByKeys)
{
    for (auto i = 10; i < 90; ++i)
        config.addPreset ("User/Many/P" + String (i) + ".tpre", stateText());

    manager.loadPresets();
    browser.setVisible (false);
    browser.setVisible (true);
    press (KeyPress::homeKey);
    const auto page = (browser.table.getHeight() - 22) / 22 - 1;

    for (const auto& [key, row] : { std::pair { KeyPress::pageDownKey, page },
                                    { KeyPress::pageDownKey, 2 * page },
                                    { KeyPress::upKey, 2 * page - 1 },
                                    { KeyPress::pageUpKey, page - 1 } })
    {
        press (key);
        EXPECT_EQ (browser.table.table.getSelectedRow(), row);
        EXPECT_EQ (current(), browser.table.shownPresets[row].name.toStdString());
    }

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
        { KeyPress::homeKey, "Initial Patch" },
    };

    for (const auto& [key, name] : steps)
    {
        press (key);
        EXPECT_EQ (current(), name);
        EXPECT_EQ (selected(), name);
    }
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

    for (const auto key : { KeyPress::downKey, KeyPress::upKey, KeyPress::endKey, KeyPress::pageDownKey })
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
            window.moveMouse (badge, { 8, 10 });
            EXPECT_GE (contrastToWhite (window.render().getPixelAt (fillAt.x, fillAt.y)), 4.5)
                << theme << isSelected;
        }
    }
}
} // namespace
