#include "common/ColourIds.h"
#include "editor/OpenEditor.h"
#include "look/TessarinLookAndFeel.h"
#include "Pixels.h"
#include "widgets/IconButton.h"
#include "widgets/ParameterLabelSlider.h"

#include <gtest/gtest.h>
#include <LunaBinary.h>

#include <tuple>

using namespace luna::ColourIds;
using juce::Colour;
using juce::ModifierKeys;
using juce::Rectangle;

namespace
{
/** The product's look, and a plug-in whose parameters the controls attach to. */
class Controls : public testing::Test
{
protected:
    tessarin::DLAF shared;
    OrvoAudioProcessor processor;

    Colour colour (int id) { return shared.lookAndFeel.findColour (id); }

    static luna::IconButton makeIconButton()
    {
        return { LunaBinary::poweroff_svg, static_cast<size_t> (LunaBinary::poweroff_svgSize) };
    }
};
} // namespace

TEST_F (Controls, PanelTakesItsTitleFromItsName)
{
    luna::Panel panel;
    panel.setSize (200, 150);
    panel.setName ("Clipper");
    EXPECT_EQ (panel.titleLabel.getText(), "Clipper");
    EXPECT_EQ (panel.titleLabel.getBounds(), (Rectangle<int> (20, 10, 180, 30)));
    EXPECT_EQ (panel.getContentBounds(), (Rectangle<int> (20, 60, 160, 70)));

    const auto lineColourAt = [&] (int x, int y)
    { return OffscreenWindow (panel).render().getPixelAt (x, y); };
    EXPECT_EQ (lineColourAt (20, 42), colour (textColourId));
    EXPECT_EQ (lineColourAt (179, 42), colour (textColourId));
    EXPECT_EQ (lineColourAt (19, 42), colour (panelColourId));
    EXPECT_EQ (lineColourAt (100, 43), colour (panelColourId));
    EXPECT_EQ (lineColourAt (0, 70), colour (backgroundColourId));
    EXPECT_EQ (lineColourAt (1, 70), colour (panelColourId));

    panel.setEnabled (false);
    EXPECT_EQ (lineColourAt (20, 42), colour (disabledTextColourId));
}

TEST_F (Controls, IconButtonFiresOnThePressOfTheLeftButtonOnly)
{
    auto button = makeIconButton();
    button.setSize (25, 20);
    button.setClickingTogglesState (true);

    auto clicks = 0, rightClicks = 0;
    button.onClick = [&] { ++clicks; };
    button.onRightClick = [&] { ++rightClicks; };

    OffscreenWindow window (button);
    window.pressMouse (button, { 12, 10 });
    EXPECT_EQ (clicks, 1);
    EXPECT_TRUE (button.getToggleState());
    window.releaseMouse();
    EXPECT_EQ (clicks, 1);

    window.clickMouse (button, { 12, 10 }, ModifierKeys::rightButtonModifier);
    EXPECT_EQ (rightClicks, 1);
    EXPECT_EQ (clicks, 1);
    EXPECT_TRUE (button.getToggleState());
}

TEST_F (Controls, ButtonsShowTheirStateInFillAndIcon)
{
    auto button = makeIconButton();
    luna::BetterTextButton textButton ("Off");

    for (auto* tested : std::initializer_list<juce::Button*> { &button, &textButton })
    {
        tested->setSize (60, 20);
        OffscreenWindow window (*tested);

        for (const auto& [isEnabled, isOn, fill, mark] :
             { std::tuple { true, false, elementColourId, textColourId },
               { true, true, primaryColourId, highlightedTextColourId },
               { false, false, disabledElementColourId, disabledTextColourId } })
        {
            tested->setEnabled (isEnabled);
            tested->setToggleState (isOn, juce::dontSendNotification);
            const auto image = window.render();
            EXPECT_EQ (image.getPixelAt (3, 3), colour (fill)) << tested->getName() << isOn;
            EXPECT_TRUE (tested == &button
                             ? pixels::count (image, { 5, 5, 50, 10 }, colour (mark)) > 0
                             : pixels::showsText (image, { 6, 3, 48, 14 }, "Off", { 5, 1, 50, 18 },
                                                  juce::FontOptions (14.0f), colour (mark), colour (fill),
                                                  juce::Justification::centred, true))
                << tested->getName() << isOn;
        }
    }
}

TEST_F (Controls, BoxesThatAreOffHaveNoBrightPart)
{
    juce::ComboBox box;
    box.setSize (100, 20);

    for (const auto isEnabled : { true, false })
    {
        box.setEnabled (isEnabled);
        const auto image = OffscreenWindow (box).render();
        EXPECT_EQ (pixels::count (image, box.getLocalBounds(), colour (textColourId)) > 0, isEnabled);
        EXPECT_EQ (pixels::count (image, box.getLocalBounds(), colour (disabledTextColourId)) > 0,
                   ! isEnabled);
    }
}

TEST_F (Controls, KnobStandsWhereItsFormulasSay)
{
    tessarin::ParameterLabelSlider control ("Gain", "gain_single", processor.parameters);
    control.setSize (60, 95);
    OffscreenWindow window (control);
    const auto parameters = control.slider.getRotaryParameters();
    EXPECT_EQ (control.valueLabel.getText(), "0.0dB");
    EXPECT_DOUBLE_EQ (control.slider.getValueFromText ("1,5"), 1.5);

    // A point on the arc of radius 27 about (30, 33); angles run clockwise from twelve.
    const auto arcColour = [&] (float proportion)
    {
        const auto angle = parameters.startAngleRadians
                           + proportion * (parameters.endAngleRadians - parameters.startAngleRadians);
        const auto point = juce::Point<float> (30.0f, 33.0f).getPointOnCircumference (27.0f, angle);
        return window.render (4.0f).getPixelAt (juce::roundToInt (point.x * 4.0f),
                                                juce::roundToInt (point.y * 4.0f));
    };

    // While a value is typed, the old one is not seen.
    const auto whileTyping = [&] (double value)
    {
        control.slider.setValue (value);
        control.valueLabel.showEditor();
        control.valueLabel.getCurrentTextEditor()->setText ("3");
        const auto image = window.render().getClippedImage (control.valueLabel.getBounds()).createCopy();
        control.valueLabel.hideEditor (true);
        return image;
    };
    const auto typed = whileTyping (-16.8);
    EXPECT_TRUE (pixels::difference (typed, whileTyping (0.0)).isEmpty());

    // 0 dB is the middle of -18 to 18.
    EXPECT_EQ (arcColour (0.25f), colour (sliderTrackColourId));
    EXPECT_EQ (arcColour (0.45f), colour (sliderTrackColourId));
    EXPECT_EQ (arcColour (0.6f), colour (sliderTrackBackgroundColourId));

    // At the middle the pointer stands above the centre, at a distance of 9.75.
    EXPECT_EQ (window.render (4.0f).getPixelAt (120, juce::roundToInt ((33.0f - 9.75f) * 4.0f)),
               colour (sliderDotColourId));

    control.setEnabled (false);
    EXPECT_EQ (arcColour (0.25f), colour (sliderTrackBackgroundColourId));
    EXPECT_EQ (window.render (4.0f).getPixelAt (120, 132), colour (disabledElementColourId));
}
