#include "PresetDisplay.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"
#include "presets/PresetFiles.h"

namespace tessarin
{

namespace
{
constexpr auto inset = 10;
constexpr auto gapInGroup = 5;
constexpr auto gapBetweenGroups = 15;

struct Block
{
    const juce::String& text;
    float fontHeight;
    juce::Colour colour;

    /** Below the block. */
    int gap;

    int mostLines;
};

/** How many lines the text takes at this width. */
int countLines (const juce::String& text, const juce::Font& font, int width)
{
    juce::AttributedString attributed (text);
    attributed.setFont (font);

    juce::TextLayout layout;
    layout.createLayout (attributed, static_cast<float> (width));
    return layout.getNumLines();
}

/** Draws the text at the top of the area, in as many lines as it takes, and takes them from the area. */
void drawBlock (juce::Graphics& g, juce::Rectangle<int>& area, const Block& block)
{
    if (block.text.isEmpty() || area.isEmpty())
        return;

    const juce::Font font { juce::FontOptions (block.fontHeight) };
    const auto lineHeight = juce::roundToInt (std::ceil (font.getHeight()));
    const auto room = juce::jmin (block.mostLines, juce::jmax (1, area.getHeight() / lineHeight));
    const auto numLines = juce::jmin (room, countLines (block.text, font, area.getWidth()));

    g.setColour (block.colour);
    g.setFont (font);
    g.drawFittedText (block.text, area.removeFromTop (numLines * lineHeight), juce::Justification::topLeft,
                      numLines, 1.0f);
    area.removeFromTop (block.gap);
}
} // namespace

PresetDisplay::PresetDisplay()
{
    setTitle ("Current preset");
    setInterceptsMouseClicks (false, false);
}

void PresetDisplay::setPreset (const Preset& newPreset)
{
    preset = newPreset;

    const auto categories = PresetFiles::joinCategories (preset.categories);
    juce::StringArray texts { preset.name, preset.author.isEmpty() ? preset.author : "by " + preset.author,
                              categories.isEmpty() ? categories : "Categories: " + categories,
                              preset.description };
    texts.removeEmptyStrings();
    setDescription (texts.joinIntoString (". "));
    repaint();
}

void PresetDisplay::paint (juce::Graphics& g)
{
    g.fillAll (findColour (luna::ColourIds::backgroundColourId));

    using namespace luna::FontHeights;
    const auto faint = findColour (luna::ColourIds::textColourId);
    const auto strong = findColour (luna::ColourIds::highlightedTextColourId);
    const auto author = "by " + preset.author;
    const auto categories = PresetFiles::joinCategories (preset.categories);
    const juce::String categoriesTitle ("Categories"), descriptionTitle ("Description");

    constexpr auto oneLine = 1;
    constexpr auto manyLines = 1000;
    auto area = getLocalBounds().reduced (inset);

    drawBlock (g, area, { preset.name, title, strong, gapInGroup, 4 });
    drawBlock (g, area, { author, control, faint, gapBetweenGroups, 2 });
    drawBlock (g, area, { categoriesTitle, control, faint, gapInGroup, oneLine });
    drawBlock (g, area, { categories, control, strong, gapBetweenGroups, 6 });
    drawBlock (g, area, { descriptionTitle, control, faint, gapInGroup, oneLine });
    drawBlock (g, area, { preset.description, control, strong, 0, manyLines });
}

std::unique_ptr<juce::AccessibilityHandler> PresetDisplay::createAccessibilityHandler()
{
    return std::make_unique<juce::AccessibilityHandler> (*this, juce::AccessibilityRole::staticText);
}

} // namespace tessarin
