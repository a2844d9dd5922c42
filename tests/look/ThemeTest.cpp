#include "common/ColourIds.h"
#include "look/TessarinLookAndFeel.h"
#include "look/ThemeColours.h"
#include "look/ThemeResolver.h"
#include "settings/TessarinLogger.h"
#include "support/TemporaryConfig.h"
#include "widgets/Contrast.h"
#include "widgets/Pixels.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

using namespace luna::ColourIds;
using juce::Colour;
namespace ThemeResolver = tessarin::ThemeResolver;

namespace
{
struct KeyRow
{
    const char* key;
    int id;

    /** "Default", "Ice", "Night" and "TwentyTwenty"; red, green and blue. */
    std::array<juce::uint32, 4> colours;
};

/** The designers' tables with every reference replaced by hand. */
constexpr std::array<KeyRow, 27> keyRows { {
    { "theme.primary", 0x5000000, { 0x3470b7, 0xa7c7e7, 0x7d3ddc, 0x3470b7 } },
    { "theme.secondary", 0x8000017, { 0xe03c26, 0x2fa2c2, 0xe03c26, 0xe03c26 } },
    { "theme.tertiary", 0x8000018, { 0xe531e9, 0x80ce45, 0xe531e9, 0xe531e9 } },
    { "theme.warning", 0x8000010, { 0xe0624c, 0xe0624c, 0xff2255, 0xe0624c } },
    { "background.background", 0x5000008, { 0x141516, 0xc1c1c1, 0x111111, 0x171b1f } },
    { "background.panel", 0x5000009, { 0x32363a, 0xdfdfdf, 0x1c1c1c, 0x32363a } },
    { "text.text", 0x5000005, { 0xb5b5b5, 0x3b3b3b, 0xcccccc, 0x8e8e8e } },
    { "text.highlightedtext", 0x5000006, { 0xeeeeee, 0x3b3b3b, 0xcccccc, 0xd5d5d5 } },
    { "text.disabledtext", 0x5000007, { 0x777777, 0x666666, 0x777777, 0x575757 } },
    { "text.pluginname", 0x8000053, { 0xffffff, 0x222222, 0xcccccc, 0xffffff } },
    { "elements.element", 0x5000001, { 0x2f3337, 0xdadada, 0x1c1c1c, 0x2f3337 } },
    { "elements.elementborder", 0x5000002, { 0x23272b, 0x727272, 0xcccccc, 0x23272b } },
    { "elements.disabledelement", 0x5000003, { 0x282c30, 0xa1a1a1, 0x1c1c1c, 0x282c30 } },
    { "elements.disabledelementborder", 0x5000004, { 0x23272b, 0x666666, 0x777777, 0x23272b } },
    { "slider.knob", 0x8000060, { 0x2f3337, 0xdadada, 0x1c1c1c, 0x2f3337 } },
    { "slider.ring", 0x8000061, { 0x2f3337, 0xdadada, 0x1c1c1c, 0x2f3337 } },
    { "slider.track", 0x8000063, { 0x3470b7, 0xa7c7e7, 0x7d3ddc, 0x3470b7 } },
    { "slider.trackbackground", 0x8000064, { 0x23272b, 0x727272, 0x111111, 0x23272b } },
    { "slider.dot", 0x8000062, { 0xb5b5b5, 0xdadada, 0x7d3ddc, 0x8e8e8e } },
    { "pianoroll.whitekey", 0x8000090, { 0xb5b5b5, 0xdadada, 0xcccccc, 0x8e8e8e } },
    { "pianoroll.blackkey", 0x8000091, { 0x2f3337, 0x3b3b3b, 0x1c1c1c, 0x2f3337 } },
    { "pianoroll.whiterow", 0x8000092, { 0x252627, 0xc5c5c5, 0x222222, 0x282b2f } },
    { "pianoroll.blackrow", 0x8000093, { 0x141516, 0xc1c1c1, 0x111111, 0x171b1f } },
    { "correlationmeter.inphase", 0x8000070, { 0x3470b7, 0x5bc95e, 0x7d3ddc, 0x3470b7 } },
    { "correlationmeter.outofphase", 0x8000071, { 0x941c1c, 0x3b3b3b, 0xdc3c63, 0x941c1c } },
    { "correlationmeter.middle", 0x8000072, { 0x2d2d2d, 0xd1d1d1, 0x111111, 0x2d2d2d } },
    { "flock.predator", 0x8000080, { 0xaa4500, 0xaa4500, 0xaa4500, 0xaa4500 } },
} };
} // namespace

TEST (Themes, ResolveEveryKeyAndFillTheTable)
{
    for (size_t theme = 0; theme < 4; ++theme)
    {
        tessarin::TessarinLookAndFeel look;
        look.setTheme (ThemeResolver::getEmbeddedThemeNames()[static_cast<int> (theme)]);

        for (const auto& row : keyRows)
        {
            const Colour expected (0xff000000 | row.colours[theme]);
            EXPECT_EQ (look.getThemeColour (row.key), expected) << look.themeName << " " << row.key;
            EXPECT_EQ (look.findColour (row.id), expected) << look.themeName << " " << row.key;
        }
    }
}

TEST (Themes, ColourTheWidgets)
{
    using namespace juce;

    // Of the widgets that a window shows. What paints itself is tested where it paints.
    const std::vector<std::pair<const char*, std::vector<int>>> copies {
        { "theme.primary",
          { TextButton::buttonOnColourId, TextEditor::highlightColourId, Slider::textBoxHighlightColourId,
            ScrollBar::thumbColourId, TreeView::selectedItemBackgroundColourId } },
        { "background.background",
          { ResizableWindow::backgroundColourId, PopupMenu::highlightedBackgroundColourId,
            ListBox::backgroundColourId, TreeView::backgroundColourId,
            TableHeaderComponent::backgroundColourId, TableHeaderComponent::highlightColourId,
            TableHeaderComponent::outlineColourId } },
        { "elements.element",
          { TextButton::buttonColourId, TextEditor::backgroundColourId, PopupMenu::backgroundColourId } },
        { "elements.elementborder",
          { TextEditor::outlineColourId, TextEditor::focusedOutlineColourId, Slider::textBoxOutlineColourId,
            ScrollBar::trackColourId } },
        { "text.text",
          { TextButton::textColourOffId, Label::textColourId, Label::textWhenEditingColourId,
            TextEditor::textColourId, CaretComponent::caretColourId, ComboBox::textColourId,
            PopupMenu::textColourId, ListBox::outlineColourId, ListBox::textColourId } },
        { "text.highlightedtext",
          { TextButton::textColourOnId, TextEditor::highlightedTextColourId,
            PopupMenu::highlightedTextColourId, PopupMenu::headerTextColourId, Slider::textBoxTextColourId,
            TableHeaderComponent::textColourId } },
    };

    // A theme in which no two colours are alike.
    const auto colourOf = [] (const String& key)
    { return Colour (0xff000000u | static_cast<uint32> (key.hashCode() & 0xffffff)); };
    tessarin::TessarinLookAndFeel look;
    tessarin::ThemeColours::apply (look, colourOf);

    for (const auto& [source, targets] : copies)
        for (const auto target : targets)
            EXPECT_EQ (look.findColour (target), colourOf (source)) << source << std::hex << target;

    for (const auto id : { Label::backgroundWhenEditingColourId + 0, Label::outlineWhenEditingColourId + 0,
                           Slider::textBoxBackgroundColourId + 0 })
        EXPECT_EQ (look.findColour (id), Colour()) << std::hex << id;
}

TEST (Look, HasOneTypefaceForAllFonts)
{
    tessarin::DLAF shared;

    for (const auto& font :
         { juce::FontOptions (14.0f), juce::FontOptions ("Courier", 9.0f, juce::Font::italic) })
    {
        const auto typeface = juce::Font (font).getTypefacePtr();
        EXPECT_EQ (typeface->getName() + " " + typeface->getStyle(), "Nunito SemiBold");
    }
}

TEST (Look, PointsDownAtOpenFoldersAndRightAtClosedOnes)
{
    tessarin::TessarinLookAndFeel look;

    // The triangle fills 10 by 10 about the middle.
    const juce::Image image (juce::Image::RGB, 20, 20, true, juce::SoftwareImageType());
    const auto area = image.getBounds().toFloat();

    for (const auto isOpen : { true, false })
    {
        const auto draw = [&] (auto& g) { look.drawTreeviewPlusMinusBox (g, area, {}, isOpen, false); };
        const auto picture = pixels::drawn (image, pixels::black, draw);
        const auto isInk = [&] (int along, int across)
        {
            const auto colour =
                isOpen ? picture.getPixelAt (across, along) : picture.getPixelAt (along, across);
            return colour == Colour (0xffeeeeee);
        };
        EXPECT_TRUE (isInk (6, 7) && isInk (6, 12) && isInk (12, 10));
        EXPECT_FALSE (isInk (4, 10) || isInk (12, 7) || isInk (12, 12) || isInk (15, 10));
    }

    EXPECT_EQ (look.getTreeViewIndentSize (*std::make_unique<juce::TreeView>()), 12);
}

TEST (Contrast, IsThatOfTheStandard)
{
    // WCAG 2.1: the luminances of the primaries are 0.2126, 0.7152 and 0.0722, and their shades follow a power.
    for (const auto& [colour, luminance] :
         { std::pair { juce::Colour (0xffff0000), 0.2126 },
           { juce::Colour (0xff00ff00), 0.7152 },
           { juce::Colour (0xff0000ff), 0.0722 },
           { juce::Colour (0xff808080), std::pow ((128.0 / 255.0 + 0.055) / 1.055, 2.4) } })
        EXPECT_NEAR (luna::Contrast::ratio (juce::Colours::white, colour), 1.05 / (luminance + 0.05), 1.0e-9);
}

TEST (Themes, OfUnknownNamesTurnYellowWithOneLinePerKey)
{
    const TemporaryConfig config;
    const tessarin::TessarinLogger logger (config.file ("log.log"));
    tessarin::TessarinLookAndFeel look;
    look.setTheme ("Light");

    const auto lines = juce::StringArray::fromLines (config.log().trimEnd());
    EXPECT_EQ (lines.size(), 27);

    for (const auto& line : lines)
        EXPECT_TRUE (line.endsWith (" Unable to find the theme colours section in theme file")) << line;

    EXPECT_EQ (look.findColour (primaryColourId), juce::Colours::yellow);
    EXPECT_EQ (look.findColour (juce::TextButton::buttonOnColourId), juce::Colours::yellow);
}
