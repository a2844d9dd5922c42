#include "browser/BrowserUnderTest.h"
#include "look/ThemeResolver.h"
#include "widgets/Contrast.h"
#include "widgets/TooltipPanel.h"

#include <tuple>

namespace
{
TEST_F (Browser, ShowsEachFieldOfAPresetInItsPlace)
{
    const juce::Colour strong (0xffeeeeee), faint (0xffb5b5b5), ground (0xff141516);
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
        EXPECT_TRUE (pixels::showsText (
            image, cell.withTrimmedRight (1), text, cell.withTrimmedLeft (4).withTrimmedRight (4),
            juce::FontOptions (14.0f), strong, ground, juce::Justification::centredLeft))
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
                                        juce::FontOptions (static_cast<float> (height)), colour, ground,
                                        juce::Justification::topLeft))
            << text;
        y += height + gap;
    }

    // Two lines of authors move what stands below.
    auto preset = browser.display.getPreset();
    preset.author = "Ann, Ben, Cleo, Dan, Eve, Finn, Gus, Hal, Ida";
    browser.display.setPreset (preset);
    const auto line = area.withY (area.getY() + 19 + 5 + 2 * 14 + 15).withHeight (14);
    EXPECT_TRUE (pixels::showsText (window.render(), line, "Categories", line, juce::FontOptions (14.0f),
                                    faint, ground, juce::Justification::topLeft));

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
    const auto areSame = [] (const auto& a, const auto& b) { return pixels::difference (a, b).isEmpty(); };
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
    showAgain();
    EXPECT_TRUE (browser.categories.getSelection().isEmpty()) << "the badges are new";
    EXPECT_TRUE (browser.modeToggle.right.selected) << "the options are not";
}

TEST_F (Browser, KeepsWhiteLegibleOnItsBadgesInAllThemes)
{
    auto& badge = *browser.categories.badges[0];
    const auto fillAt = content.getLocalPoint (&badge, juce::Point<int> (4, 10));

    for (const auto& theme : tessarin::ThemeResolver::getEmbeddedThemeNames())
    {
        shared.lookAndFeel.setTheme (theme);

        for (const auto isSelected : { false, true })
        {
            badge.setSelected (isSelected, juce::dontSendNotification);
            window.moveMouse (badge, { 8, 10 });
            const auto fill = window.render().getPixelAt (fillAt.x, fillAt.y);
            EXPECT_GE (luna::Contrast::ratio (juce::Colours::white, fill), 4.5) << theme << isSelected;
        }
    }
}
} // namespace
