#include "TessarinLookAndFeel.h"

#include "common/ColourIds.h"
#include "look/ThemeColours.h"
#include "look/ThemeResolver.h"
#include "settings/Settings.h"

#include <cmath>

namespace tessarin
{

using namespace luna::ColourIds;

namespace
{
constexpr juce::Point<float> knobCentre { 30.0f, 33.0f };

juce::Rectangle<float> knobCircle (float inset, float diameter)
{
    return { 8.0f + inset, 11.0f + inset, diameter, diameter };
}

void strokeArc (juce::Graphics& g, float startAngle, float endAngle, float thickness)
{
    constexpr auto radius = 27.0f;

    juce::Path arc;
    arc.addCentredArc (knobCentre.x, knobCentre.y, radius, radius, 0.0f, startAngle, endAngle, true);
    g.strokePath (arc, { thickness, juce::PathStrokeType::curved, juce::PathStrokeType::rounded });
}

/** The dot on the knob that points at the value. */
void drawKnobPointer (juce::Graphics& g, juce::Slider& slider, float valueAngle)
{
    constexpr auto distance = 9.75f;
    constexpr auto radius = 3.5f;

    // The arcs' angles start at twelve o'clock, the cosine's at three.
    const auto angle = valueAngle - juce::MathConstants<float>::halfPi;
    const juce::Rectangle<float> dot (knobCentre.x + distance * std::cos (angle) - radius,
                                      knobCentre.y + distance * std::sin (angle) - radius, 2.0f * radius,
                                      2.0f * radius);

    g.setColour (slider.findColour (sliderDotColourId));
    g.fillEllipse (dot);
    g.setColour (slider.findColour (elementBorderColourId));
    g.drawEllipse (dot.reduced (0.5f), 1.0f);
}

/** Around the value, since the knob has no room for it. */
void drawFocusRing (juce::Graphics& g, juce::Slider& slider)
{
    const auto bounds = slider.getLookAndFeel().getSliderLayout (slider).textBoxBounds.toFloat();
    g.setColour (slider.findColour (highlightedTextColourId));
    g.drawRoundedRectangle (bounds.reduced (0.5f), 3.0f, 1.0f);
}

void drawKnobBody (juce::Graphics& g, juce::Slider& slider)
{
    const auto isEnabled = slider.isEnabled();
    const auto ring = slider.findColour (isEnabled ? sliderRingColourId : disabledElementColourId);
    const auto edge = slider.findColour (isEnabled ? elementBorderColourId : disabledElementBorderColourId);

    g.setColour (slider.isMouseOverOrDragging() ? ring.brighter (0.1f) : ring);
    g.fillEllipse (knobCircle (0.0f, 44.0f));
    g.setColour (edge);
    g.drawEllipse (knobCircle (1.0f, 42.0f), 2.0f);

    const auto knob = slider.findColour (sliderKnobColourId);

    if (isEnabled)
        g.setGradientFill (juce::ColourGradient::vertical (knob.brighter (0.15f), 12.0f, knob, 51.0f));
    else
        g.setColour (slider.findColour (disabledElementColourId));

    g.fillEllipse (knobCircle (4.0f, 36.0f));
    g.setColour (edge);
    g.drawEllipse (knobCircle (4.5f, 35.0f), 1.0f);
}
} // namespace

TessarinLookAndFeel::TessarinLookAndFeel()
{
    setTheme (Settings::defaultTheme);
}

void TessarinLookAndFeel::setTheme (const juce::String& name)
{
    themeName = name;
    theme = ThemeResolver::parseEmbeddedTheme (name);
    ThemeColours::apply (*this, [this] (const juce::String& key) { return getThemeColour (key); });
}

juce::Colour TessarinLookAndFeel::getThemeColour (const juce::String& path) const
{
    return ThemeResolver::getColour (theme, path);
}

void TessarinLookAndFeel::drawRotarySlider (juce::Graphics& g, int, int, int, int, float position,
                                            float rotaryStartAngle, float rotaryEndAngle,
                                            juce::Slider& slider)
{
    const auto valueAngle = rotaryStartAngle + position * (rotaryEndAngle - rotaryStartAngle);

    drawKnobBody (g, slider);

    if (slider.isEnabled())
        drawKnobPointer (g, slider, valueAngle);

    if (slider.hasKeyboardFocus (true))
        drawFocusRing (g, slider);

    g.setColour (slider.findColour (sliderTrackBackgroundColourId));
    strokeArc (g, rotaryStartAngle, rotaryEndAngle, 5.0f);

    if (! slider.isEnabled())
        return;

    const auto track = slider.findColour (sliderTrackColourId);
    g.setColour (slider.isMouseOverOrDragging() ? track.brighter (0.1f) : track);
    strokeArc (g, rotaryStartAngle, valueAngle, 3.0f);
}

int TessarinLookAndFeel::getSliderThumbRadius (juce::Slider& slider)
{
    constexpr auto largestRadius = 12;

    if (slider.getProperties().contains ("luna_velocity_slider"))
        return 0;

    return juce::jmin (largestRadius, (slider.isHorizontal() ? slider.getHeight() : slider.getWidth()) / 2);
}

/** A velocity slider is a bar in a colour of its own; the product has none. */
void TessarinLookAndFeel::drawLinearSlider (juce::Graphics& g, int x, int y, int width, int height,
                                            float position, float minPosition, float maxPosition,
                                            juce::Slider::SliderStyle style, juce::Slider& slider)
{
    const auto& properties = slider.getProperties();

    if (! properties.contains ("luna_velocity_slider"))
    {
        LunaLibLookAndFeel::drawLinearSlider (g, x, y, width, height, position, minPosition, maxPosition,
                                              style, slider);
        return;
    }

    const auto colour = properties.getWithDefault ("luna_velocity_slider_colour", "#ffff0000").toString();
    const auto bounds = juce::Rectangle<int> (x, y, width, height).toFloat();

    g.setColour (juce::Colour::fromString (colour.trimCharactersAtStart ("#")));
    g.fillRect (slider.isHorizontal() ? bounds.withRight (position) : bounds.withTop (position));
}

juce::Slider::SliderLayout TessarinLookAndFeel::getSliderLayout (juce::Slider& slider)
{
    if (! slider.isRotary() || slider.getTextBoxPosition() != juce::Slider::TextBoxBelow)
        return LunaLibLookAndFeel::getSliderLayout (slider);

    // The control's name lies on the rows from 68 to 83, its text in their middle; the value's text starts
    // below it.
    constexpr auto textY = 80;
    constexpr auto textHeight = 15;

    return { { 0, 0, slider.getWidth(), textY }, { 0, textY, slider.getWidth(), textHeight } };
}

void TessarinLookAndFeel::drawTreeviewPlusMinusBox (juce::Graphics& g, const juce::Rectangle<float>& area,
                                                    juce::Colour, bool isOpen, bool)
{
    juce::Path triangle;

    if (isOpen)
        triangle.addTriangle (0.0f, 0.0f, 1.0f, 0.0f, 0.5f, 1.0f);
    else
        triangle.addTriangle (0.0f, 0.0f, 1.0f, 0.5f, 0.0f, 1.0f);

    g.setColour (findColour (highlightedTextColourId));
    g.fillPath (triangle,
                triangle.getTransformToScaleToFit (area.reduced (2.0f, area.getHeight() / 4.0f), true));
}

void TessarinLookAndFeel::drawPopupMenuSectionHeader (juce::Graphics& g, const juce::Rectangle<int>& area,
                                                      const juce::String& sectionName)
{
    // The typeface has one weight, so the ground tells a heading from the choices.
    g.setColour (findColour (backgroundColourId));
    g.fillRect (area);
    g.setFont (getPopupMenuFont().boldened());
    g.setColour (findColour (juce::PopupMenu::headerTextColourId));
    g.drawText (sectionName, area.reduced (10, 0), juce::Justification::centredLeft, true);
}

std::unique_ptr<juce::FocusOutline>
TessarinLookAndFeel::createFocusOutlineForComponent (juce::Component& focused)
{
    struct Ring final : public juce::FocusOutline::OutlineWindowProperties
    {
        explicit Ring (juce::Colour colourToUse) : colour (colourToUse) {}

        juce::Rectangle<int> getOutlineBounds (juce::Component& component) override
        {
            return component.getScreenBounds();
        }

        void drawOutline (juce::Graphics& g, int width, int height) override
        {
            g.setColour (colour);
            g.drawRoundedRectangle (juce::Rectangle<int> (width, height).toFloat().reduced (1.0f), 3.0f,
                                    2.0f);
        }

        const juce::Colour colour;
    };

    return std::make_unique<juce::FocusOutline> (
        std::make_unique<Ring> (focused.findColour (highlightedTextColourId)));
}

DLAF::DLAF()
{
    juce::LookAndFeel::setDefaultLookAndFeel (&lookAndFeel);
    juce::Typeface::clearTypefaceCache();
}

DLAF::~DLAF()
{
    juce::LookAndFeel::setDefaultLookAndFeel (nullptr);
    juce::Typeface::clearTypefaceCache();
}

} // namespace tessarin
