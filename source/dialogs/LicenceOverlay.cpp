#include "LicenceOverlay.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"
#include "widgets/PressKey.h"

namespace tessarin
{

void LicenceOverlay::setText (const juce::String& newText)
{
    text = newText;
    setTitle (text);
    setVisible (text.isNotEmpty());
    repaint();
}

void LicenceOverlay::paint (juce::Graphics& g)
{
    constexpr auto margin = 20;
    constexpr auto mostLines = 5;

    // As under a dialog; a notice stands on the ground of a panel.
    g.fillAll (kind == Kind::cover ? juce::Colour (0xbb000000) : findColour (luna::ColourIds::panelColourId));
    g.setColour (kind == Kind::cover ? juce::Colours::white
                                     : findColour (luna::ColourIds::highlightedTextColourId));
    g.setFont (luna::FontHeights::topBar);
    g.drawFittedText (text, getLocalBounds().reduced (margin, 0), juce::Justification::centred, mostLines);
}

void LicenceOverlay::mouseDown (const juce::MouseEvent&)
{
    if (onClick)
        onClick();
}

bool LicenceOverlay::keyPressed (const juce::KeyPress& key)
{
    const auto isPress = luna::isPress (key);

    if (isPress && onClick)
        onClick();

    return isPress || key.isKeyCode (juce::KeyPress::tabKey);
}

} // namespace tessarin
