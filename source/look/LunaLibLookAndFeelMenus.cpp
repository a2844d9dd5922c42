#include "common/ColourIds.h"
#include "common/FontHeights.h"
#include "LunaLibLookAndFeel.h"
#include "widgets/Contrast.h"

namespace luna
{

using namespace ColourIds;

namespace
{
constexpr auto rowHeight = 22;
constexpr auto separatorHeight = 5;
constexpr auto inset = 10;

/** In front of a choice's text. Headings begin where the ticks stand. */
constexpr auto tickWidth = 10;
constexpr auto tickColumn = 15;

/** Behind it, where there is a submenu. */
constexpr auto arrowColumn = 20;

void strokeRounded (juce::Graphics& g, const juce::Path& path)
{
    g.strokePath (path,
                  juce::PathStrokeType (1.75f, juce::PathStrokeType::curved, juce::PathStrokeType::rounded));
}

void drawTick (juce::Graphics& g, juce::Rectangle<float> area)
{
    juce::Path tick;
    tick.startNewSubPath (area.getX(), area.getCentreY());
    tick.lineTo (area.getX() + 0.35f * area.getWidth(), area.getBottom());
    tick.lineTo (area.getRight(), area.getY());
    strokeRounded (g, tick);
}

void drawArrow (juce::Graphics& g, juce::Rectangle<float> area)
{
    juce::Path arrow;
    arrow.startNewSubPath (area.getTopLeft());
    arrow.lineTo (area.getRight(), area.getCentreY());
    arrow.lineTo (area.getBottomLeft());
    strokeRounded (g, arrow);
}
} // namespace

/** A list that is higher than the screen gets columns, rather than to scroll. */
juce::PopupMenu::Options LunaLibLookAndFeel::getOptionsForComboBoxPopupMenu (juce::ComboBox& box,
                                                                             juce::Label& label)
{
    constexpr auto mostColumns = 7;
    return LookAndFeel_V4::getOptionsForComboBoxPopupMenu (box, label).withMaximumNumColumns (mostColumns);
}

void LunaLibLookAndFeel::drawPopupMenuBackgroundWithOptions (juce::Graphics& g, int width, int height,
                                                             const juce::PopupMenu::Options&)
{
    // An element's border would vanish in some themes, inside and outside.
    g.fillAll (findColour (juce::PopupMenu::backgroundColourId));
    g.setColour (findColour (juce::PopupMenu::textColourId));
    g.drawRect (0, 0, width, height, 1);
}

void LunaLibLookAndFeel::drawPopupMenuItem (juce::Graphics& g, const juce::Rectangle<int>& area,
                                            bool isSeparator, bool isActive, bool isHighlighted,
                                            bool isTicked, bool hasSubMenu, const juce::String& text,
                                            const juce::String& shortcutKeyText, const juce::Drawable*,
                                            const juce::Colour* textColour)
{
    if (isSeparator)
    {
        g.setColour (findColour (disabledTextColourId));
        g.fillRect (area.withSizeKeepingCentre (area.getWidth() - 2 * inset, 1));
        return;
    }

    if (isHighlighted && isActive)
        drawMenuHighlight (g, area);

    const auto id = ! isActive      ? static_cast<int> (disabledTextColourId)
                    : isHighlighted ? static_cast<int> (juce::PopupMenu::highlightedTextColourId)
                                    : static_cast<int> (juce::PopupMenu::textColourId);
    g.setColour (textColour != nullptr ? *textColour : findColour (id));
    g.setFont (getPopupMenuFont());

    auto row = area.reduced (inset, 0);

    if (hasSubMenu)
        drawArrow (g, row.removeFromRight (arrowColumn)
                          .toFloat()
                          .removeFromRight (5.0f)
                          .withSizeKeepingCentre (5.0f, 9.0f));

    g.drawText (shortcutKeyText, row, juce::Justification::centredRight, true);

    if (const auto column = row.removeFromLeft (tickColumn); isTicked)
        drawTick (g, column.withWidth (tickWidth).toFloat().withSizeKeepingCentre (8.0f, 7.0f));

    g.drawText (text, row, juce::Justification::centredLeft, true);
}

/** As a selected row of the browser, in the frame of the keyboard's focus: no fill that is legible under the text would
    also stand out from every theme's menus. */
void LunaLibLookAndFeel::drawMenuHighlight (juce::Graphics& g, juce::Rectangle<int> area)
{
    const auto text = findColour (juce::PopupMenu::highlightedTextColourId);
    const auto bounds = area.reduced (1, 0);

    g.setColour (Contrast::darkenFor (text, findColour (primaryColourId)));
    g.fillRect (bounds);
    g.setColour (text);
    g.drawRect (bounds, 1);
}

void LunaLibLookAndFeel::getIdealPopupMenuItemSize (const juce::String& text, bool isSeparator, int,
                                                    int& idealWidth, int& idealHeight)
{
    constexpr auto longestText = 300;
    constexpr auto separatorWidth = 50;
    const auto textWidth = juce::GlyphArrangement::getStringWidthInt (getPopupMenuFont(), text);

    idealHeight = isSeparator ? separatorHeight : rowHeight;
    idealWidth = isSeparator ? separatorWidth
                             : juce::jmin (longestText, textWidth) + 2 * inset + tickColumn + arrowColumn;
}

void LunaLibLookAndFeel::getIdealPopupMenuSectionHeaderSizeWithOptions (const juce::String& text, int,
                                                                        int& idealWidth, int& idealHeight,
                                                                        const juce::PopupMenu::Options&)
{
    getIdealPopupMenuItemSize (text, false, 0, idealWidth, idealHeight);
}

juce::Font LunaLibLookAndFeel::getPopupMenuFont()
{
    return { juce::FontOptions (FontHeights::control) };
}

} // namespace luna
