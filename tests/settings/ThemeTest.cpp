#include "common/ColourIds.h"
#include "settings/TessarinLookAndFeel.h"
#include "settings/ThemeColours.h"
#include "settings/ThemeResolver.h"

#include <gtest/gtest.h>
#include <LunaBinary.h>

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

    /** "Default", "Ice", "Night" and "TwentyTwenty"; red, green and blue. */
    std::array<juce::uint32, 4> colours;
};

/** The designers' tables with every reference replaced by hand. */
constexpr std::array<KeyRow, 27> keyRows { {
    { "theme.primary", { 0x3470b7, 0xa7c7e7, 0x7d3ddc, 0x3470b7 } },
    { "theme.secondary", { 0xe03c26, 0x2fa2c2, 0xe03c26, 0xe03c26 } },
    { "theme.tertiary", { 0xe531e9, 0x80ce45, 0xe531e9, 0xe531e9 } },
    { "theme.warning", { 0xe0624c, 0xe0624c, 0xff2255, 0xe0624c } },
    { "background.background", { 0x141516, 0xc1c1c1, 0x111111, 0x171b1f } },
    { "background.panel", { 0x32363a, 0xdfdfdf, 0x1c1c1c, 0x32363a } },
    { "text.text", { 0xb5b5b5, 0x3b3b3b, 0xcccccc, 0x8e8e8e } },
    { "text.highlightedtext", { 0xeeeeee, 0x3b3b3b, 0xcccccc, 0xd5d5d5 } },
    { "text.disabledtext", { 0x777777, 0x666666, 0x777777, 0x575757 } },
    { "text.pluginname", { 0xffffff, 0x222222, 0xcccccc, 0xffffff } },
    { "elements.element", { 0x2f3337, 0xdadada, 0x1c1c1c, 0x2f3337 } },
    { "elements.elementborder", { 0x23272b, 0x727272, 0xcccccc, 0x23272b } },
    { "elements.disabledelement", { 0x282c30, 0xa1a1a1, 0x1c1c1c, 0x282c30 } },
    { "elements.disabledelementborder", { 0x23272b, 0x666666, 0x777777, 0x23272b } },
    { "slider.knob", { 0x2f3337, 0xdadada, 0x1c1c1c, 0x2f3337 } },
    { "slider.ring", { 0x2f3337, 0xdadada, 0x1c1c1c, 0x2f3337 } },
    { "slider.track", { 0x3470b7, 0xa7c7e7, 0x7d3ddc, 0x3470b7 } },
    { "slider.trackbackground", { 0x23272b, 0x727272, 0x111111, 0x23272b } },
    { "slider.dot", { 0xb5b5b5, 0xdadada, 0x7d3ddc, 0x8e8e8e } },
    { "pianoroll.whitekey", { 0xb5b5b5, 0xdadada, 0xcccccc, 0x8e8e8e } },
    { "pianoroll.blackkey", { 0x2f3337, 0x3b3b3b, 0x1c1c1c, 0x2f3337 } },
    { "pianoroll.whiterow", { 0x252627, 0xc5c5c5, 0x222222, 0x282b2f } },
    { "pianoroll.blackrow", { 0x141516, 0xc1c1c1, 0x111111, 0x171b1f } },
    { "correlationmeter.inphase", { 0x3470b7, 0x5bc95e, 0x7d3ddc, 0x3470b7 } },
    { "correlationmeter.outofphase", { 0x941c1c, 0x3b3b3b, 0xdc3c63, 0x941c1c } },
    { "correlationmeter.middle", { 0x2d2d2d, 0xd1d1d1, 0x111111, 0x2d2d2d } },
    { "flock.predator", { 0xaa4500, 0xaa4500, 0xaa4500, 0xaa4500 } },
} };

/** Keeps the last line that was logged. */
struct LogProbe : public juce::Logger
{
    LogProbe() { setCurrentLogger (this); }

    ~LogProbe() override { setCurrentLogger (nullptr); }

    void logMessage (const juce::String& message) override { lines.add (message); }

    juce::StringArray lines;
};

/** WCAG 2.1, relative luminance and contrast ratio. */
double luminanceOf (Colour colour)
{
    const auto linear = [] (juce::uint8 channel)
    {
        const auto c = channel / 255.0;
        return c <= 0.03928 ? c / 12.92 : std::pow ((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear (colour.getRed()) + 0.7152 * linear (colour.getGreen())
           + 0.0722 * linear (colour.getBlue());
}

double contrastOf (Colour a, Colour b)
{
    const auto [darker, lighter] = std::minmax ({ luminanceOf (a), luminanceOf (b) });
    return (lighter + 0.05) / (darker + 0.05);
}
} // namespace

TEST (Themes, ResolveEveryKeyAndFillTheTable)
{
    const auto& systemColours = tessarin::ThemeColours::getSystemColours();
    ASSERT_EQ (systemColours.size(), keyRows.size());

    for (size_t theme = 0; theme < 4; ++theme)
    {
        tessarin::TessarinLookAndFeel look;
        look.setTheme (ThemeResolver::getEmbeddedThemeNames()[static_cast<int> (theme)]);

        for (const auto& row : keyRows)
        {
            const Colour expected (0xff000000 | row.colours[theme]);
            EXPECT_EQ (look.getThemeColour (row.key), expected) << look.themeName << " " << row.key;

            const auto entry =
                std::find_if (systemColours.begin(), systemColours.end(),
                              [&] (const auto& colour) { return juce::String (colour.key) == row.key; });
            ASSERT_NE (entry, systemColours.end()) << row.key;
            EXPECT_EQ (look.findColour (entry->id), expected) << row.key;
        }
    }
}

TEST (Themes, HaveTheSizesOfTheirDocuments)
{
    EXPECT_EQ (LunaBinary::Default_jsonSize, 1497);
    EXPECT_EQ (LunaBinary::Ice_jsonSize, 1494);
    EXPECT_EQ (LunaBinary::Night_jsonSize, 1539);
    EXPECT_EQ (LunaBinary::TwentyTwenty_jsonSize, 1554);
}

TEST (Themes, CopyTheSystemColoursToTheWidgets)
{
    const std::vector<std::pair<int, std::vector<int>>> copies {
        { warningColourId, { 0x2000020, 0x2000053, 0x2300030 } },
        { primaryColourId,
          { 0x2000021, 0x2000031, 0x2000051, 0x2000070, 0x2000090, 0x1000101, 0x1000202,
            juce::ScrollBar::thumbColourId } },
        { panelColourId, { 0x2000022, 0x8000020 } },
        { backgroundColourId,
          { 0x2000000, 0x2000030, 0x2000044, 0x2000050, 0x2000081, 0x2000091, 0x2000110, 0x8000021,
            0x1005700 } },
        { elementColourId, { 0x1000100, 0x1000200, 0x1000700, 0x1001300 } },
        { elementBorderColourId, { 0x1000205, 0x1000206, 0x1001310, 0x1001700 } },
        { textColourId,
          { 0x2000001, 0x2000002, 0x2000003, 0x2000032, 0x2000043, 0x2000052, 0x2000062, 0x2000080, 0x2000100,
            0x2000111, 0x1000102, 0x1000281, 0x1000201, 0x1000a00 } },
        { highlightedTextColourId, { 0x1000103, 0x1000203, 0x1000800, 0x1001400 } },
        { correlationInPhaseColourId, { 0x2000040 } },
        { correlationOutOfPhaseColourId, { 0x2000041 } },
        { correlationMiddleColourId, { 0x2000042 } },
        { pianoRollWhiteRowColourId, { 0x2000060 } },
        { pianoRollBlackRowColourId, { 0x2000061 } },
    };

    tessarin::TessarinLookAndFeel look;
    look.setTheme ("Ice");

    for (const auto& [source, targets] : copies)
        for (const auto target : targets)
            EXPECT_EQ (look.findColour (target), look.findColour (source)) << std::hex << target;

    EXPECT_EQ (look.findColour (0x2000023), juce::Colours::white);
    EXPECT_TRUE (look.findColour (juce::Slider::textBoxBackgroundColourId).isTransparent());
}

TEST (Themes, GiveEachFaultItsColourAndLine)
{
    struct Fault
    {
        const char* theme;
        const char* path;
        juce::uint32 colour;
        const char* line;
    };

    const auto* full =
        R"({"variables":{"a":"141516","bad":"12345"},"colours":{"s":{"literal":"A0b1C2","hash":"#141516",
        "long":"1415161","five":"14151","ref":"$$a","unknown":"$b","badref":"$bad","darker":"$a darker",
        "darkest":"$a darker 1","brighter":"$a brighter 0.08","word":"$a paler 2","modified":"141516 darker",
        "lost":"$b darker 1"}}})";

    const std::vector<Fault> faults {
        { "", "s.literal", 0xffffff00, "Unable to find the theme colours section in theme file" },
        { R"({"colours":{"s":{"k":"$a"}}})", "s.k", 0xffff0000,
          "Unable to find the theme variables section in theme file" },
        { full, "s.unknown", 0xff0000ff, "Unable to find variable 'b' in theme file" },
        { full, "s.lost", 0xff00007f, "Unable to find variable 'b' in theme file" },
        { full, "s.nothing", 0xff008000, "Unable to find the  colour 's.nothing' section in theme file" },
        { full, "s.hash", 0xffffa500, "The colour '#141516' appears to be invalid" },
        { full, "s.long", 0xffffa500, "The colour '1415161' appears to be invalid" },
        { full, "s.five", 0xffffa500, "The colour '14151' appears to be invalid" },
        { full, "s.badref", 0xffffa500, "The colour '12345' appears to be invalid" },
        { full, "s.modified", 0xffffa500, "The colour '141516 darker' appears to be invalid" },
        // What is no fault logs nothing.
        { full, "s.literal", 0xffa0b1c2, nullptr },
        { full, "colours.s.literal", 0xffa0b1c2, nullptr },
        { full, "s.ref", 0xff141516, nullptr },
        { full, "s.word", 0xff141516, nullptr },
        // 20, 21 and 22 times 0.71428573, and times 0.5, truncated.
        { full, "s.darker", 0xff0e0f0f, nullptr },
        { full, "s.darkest", 0xff0a0a0b, nullptr },
        // 255 - (255 - c) / 1.08, truncated.
        { full, "s.brighter", 0xff252627, nullptr },
    };

    for (const auto& fault : faults)
    {
        LogProbe log;
        EXPECT_EQ (ThemeResolver::getColour (juce::JSON::parse (fault.theme), fault.path),
                   Colour (fault.colour))
            << fault.path;
        EXPECT_EQ (log.lines.joinIntoString ("|"), juce::String (fault.line)) << fault.path;
    }
}

TEST (Themes, OfUnknownNamesTurnYellowWithOneLinePerKey)
{
    tessarin::TessarinLookAndFeel look;
    LogProbe log;
    look.setTheme ("Light");

    EXPECT_EQ (log.lines.size(), 27);
    EXPECT_EQ (look.findColour (primaryColourId), juce::Colours::yellow);
    EXPECT_EQ (look.findColour (juce::TextButton::buttonOnColourId), juce::Colours::yellow);
}

/** The grounds on which our own design puts text. The theme's documents settle some pairs themselves; those
    that fall short of 4.5 to 1 are named here with their ratios. */
TEST (Themes, KeepTextLegibleOnTheGroundsThatWeChose)
{
    struct Pair
    {
        int text;
        int ground;
        std::array<double, 4> settledRatios;
    };

    // 0: the pair must reach 4.5; else the ratio that the theme's own colours give.
    const std::vector<Pair> pairs {
        { textColourId, panelColourId, { 0, 0, 0, 3.72 } },
        { textColourId, elementColourId, { 0, 0, 0, 3.89 } },
        { textColourId, backgroundColourId, { 0, 0, 0, 0 } },
        { highlightedTextColourId, panelColourId, { 0, 0, 0, 0 } },
        { highlightedTextColourId, backgroundColourId, { 0, 0, 0, 0 } },
        { highlightedTextColourId, primaryColourId, { 4.36, 0, 3.66, 3.45 } },
    };

    for (size_t theme = 0; theme < 4; ++theme)
    {
        tessarin::TessarinLookAndFeel look;
        look.setTheme (ThemeResolver::getEmbeddedThemeNames()[static_cast<int> (theme)]);

        for (const auto& pair : pairs)
        {
            const auto ratio = contrastOf (look.findColour (pair.text), look.findColour (pair.ground));
            const auto settled = pair.settledRatios[theme];

            if (settled > 0.0)
                EXPECT_NEAR (ratio, settled, 0.01)
                    << look.themeName << std::hex << pair.text << " " << pair.ground;
            else
                EXPECT_GE (ratio, 4.5) << look.themeName << std::hex << pair.text << " " << pair.ground;
        }
    }
}
