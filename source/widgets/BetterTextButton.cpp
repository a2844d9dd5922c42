#include "BetterTextButton.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"

namespace luna
{

BetterTextButton::BetterTextButton (const juce::String& initialText) : LeftClickButton (initialText)
{
    addAndMakeVisible (label);
    label.setText (initialText, juce::dontSendNotification);
    label.setFont (juce::FontOptions (FontHeights::control));
    label.setJustificationType (juce::Justification::centred);
    label.setEditable (true);

    // The button is the one stop of the tab key; the label would open its editor there.
    label.setWantsKeyboardFocus (false);
    label.setFocusContainerType (FocusContainerType::none);
    label.setAccessible (false);

    label.onTextChange = [this]
    {
        if (onTextEdited)
            onTextEdited (this, label.getText());
    };
}

void BetterTextButton::resized()
{
    label.setBounds (getLocalBounds());
}

void BetterTextButton::paintButton (juce::Graphics& g, bool isHighlighted, bool isDown)
{
    const auto id = getToggleState() ? juce::TextButton::buttonOnColourId : juce::TextButton::buttonColourId;
    getLookAndFeel().drawButtonBackground (g, *this, findColour (id), isHighlighted, isDown);
}

void BetterTextButton::enablementChanged()
{
    LeftClickButton::enablementChanged();
    updateTextColour();
}

void BetterTextButton::lookAndFeelChanged()
{
    LeftClickButton::lookAndFeelChanged();
    updateTextColour();
}

void BetterTextButton::rightButtonPressed()
{
    if (onRightClick)
        onRightClick (this);
}

void BetterTextButton::updateTextColour()
{
    // On a shaded ground the plain text colour would be too faint.
    const auto isLit = getToggleState() || isOver() || isDown();
    const auto id = ! isEnabled() ? ColourIds::disabledTextColourId
                    : isLit       ? ColourIds::highlightedTextColourId
                                  : ColourIds::textColourId;
    label.setColour (juce::Label::textColourId, findColour (id));
}

} // namespace luna
