#include "RealtimeLabel.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"
#include "widgets/Contrast.h"
#include "widgets/PressKey.h"

using namespace luna;

RealtimeLabel::RealtimeLabel (const float* valueSource, juce::String nameToShow,
                              std::function<juce::String (float)> toString)
    : valueToString (std::move (toString)),
      source (valueSource),
      name (std::move (nameToShow)),
      nameFont (juce::FontOptions (FontHeights::control)),
      valueFont (juce::FontOptions (FontHeights::control, juce::Font::bold))
{
    if (! valueToString)
        valueToString = [] (float value) { return juce::String (value, 2); };

    setTitle (name);
    setMouseCursor (juce::MouseCursor::PointingHandCursor);
    setWantsKeyboardFocus (true);
    setMouseClickGrabsKeyboardFocus (false);
    setHasFocusOutline (true);
    readLookAndFeel();
    startTimer (33);
}

void RealtimeLabel::mouseDown (const juce::MouseEvent&)
{
    press();
}

bool RealtimeLabel::keyPressed (const juce::KeyPress& key)
{
    return luna::isPress (key) && press();
}

bool RealtimeLabel::press()
{
    if (onClick)
        onClick();

    return onClick != nullptr;
}

juce::String RealtimeLabel::getValueText() const
{
    return isEnabled() ? valueToString (readSource()) : juce::String ("-");
}

void RealtimeLabel::timerCallback()
{
    // Most frames bring nothing new, and a text is worth a look before it is made.
    const auto value = readSource();

    if (juce::exactlyEqual (value, comparedValue))
        return;

    comparedValue = value;

    if (getValueText() != shownText || standsOut() != hasFrame)
        refresh();
}

namespace
{
/** What a screen reader says of the readout. */
struct ReadoutText final : public juce::AccessibilityTextValueInterface
{
    explicit ReadoutText (const RealtimeLabel& label) : readout (label) {}

    bool isReadOnly() const override { return true; }

    juce::String getCurrentValueAsString() const override { return readout.getValueText(); }

    void setValueAsString (const juce::String&) override {}

    const RealtimeLabel& readout;
};
} // namespace

std::unique_ptr<juce::AccessibilityHandler> RealtimeLabel::createAccessibilityHandler()
{
    return std::make_unique<juce::AccessibilityHandler> (
        *this, juce::AccessibilityRole::button,
        juce::AccessibilityActions().addAction (juce::AccessibilityActionType::press, [this] { press(); }),
        juce::AccessibilityHandler::Interfaces { std::make_unique<ReadoutText> (*this) });
}

void RealtimeLabel::readLookAndFeel()
{
    textColour = findColour (ColourIds::textColourId);
    highlightedTextColour = findColour (ColourIds::highlightedTextColourId);
    backgroundColour = findColour (ColourIds::backgroundColourId);
    disabledTextColour = findColour (ColourIds::disabledTextColourId);
    nameFont = juce::Font (juce::FontOptions (FontHeights::control));
    valueFont = nameFont.boldened();
    refresh();
}

void RealtimeLabel::refresh()
{
    shownText = getValueText();
    hasFrame = standsOut();
    repaint();
}

void RealtimeLabel::paint (juce::Graphics& g)
{
    if (rows.items.size() < 2)
        return;

    const auto drawRow = [&] (int row, const juce::String& text, const juce::Font& font, juce::Colour colour)
    {
        g.setColour (colour);
        g.setFont (font);
        g.drawText (text, rows.items.getReference (row).currentBounds, juce::Justification::centred, true);
    };

    drawRow (0, name, nameFont, isEnabled() ? textColour : disabledTextColour);
    drawRow (1, shownText, valueFont, isEnabled() ? highlightedTextColour : textColour);

    if (hasFrame)
        drawFrame (g);
}

/** Of a lamp's colour, as far as that is seen on the ground. The text keeps its own. */
void RealtimeLabel::drawFrame (juce::Graphics& g) const
{
    constexpr auto thickness = 1.5f;
    constexpr auto margin = 8.0f;
    const auto row = rows.items.getReference (1).currentBounds;

    g.setColour (Contrast::moveAway (findColour (ColourIds::warningColourId), backgroundColour));
    g.drawRoundedRectangle (row.reduced (margin, 0.0f).reduced (0.5f * thickness), 3.0f, thickness);
}

void RealtimeLabel::resized()
{
    const auto makeRow = [this] (float height)
    { return juce::FlexItem (static_cast<float> (getWidth()), height).withFlex (0.0f, 1.0f, height); };

    rows.flexDirection = juce::FlexBox::Direction::column;
    rows.items = { makeRow (16.0f), makeRow (18.0f) };
    rows.performLayout (getLocalBounds());
}
