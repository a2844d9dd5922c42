#include "PresetBox.h"

namespace tessarin
{

PresetBox::PresetBox()
{
    setTitle ("Preset");
    setMouseClickGrabsKeyboardFocus (false);
}

void PresetBox::setChanged (bool isChangedNow)
{
    if (isChangedNow == isChanged)
        return;

    isChanged = isChangedNow;
    setTitle (isChanged ? "Preset, changed" : "Preset");
    repaint();
}

void PresetBox::paintOverChildren (juce::Graphics& g)
{
    if (! isChanged)
        return;

    constexpr auto markWidth = 8;
    constexpr auto gap = 2;
    constexpr auto arrowArea = 18;

    // Where the text ends, or is cut off.
    auto& look = getLookAndFeel();
    const auto font = look.getComboBoxFont (*this);
    juce::Label placed;
    look.positionComboBoxText (*this, placed);
    const auto text = placed.getBorderSize().subtractedFrom (placed.getBounds());
    const auto end = text.getX() + juce::GlyphArrangement::getStringWidthInt (font, getText()) + gap;

    g.setColour (findColour (juce::ComboBox::textColourId));
    g.setFont (font);
    g.drawText ("*", juce::jmin (end, getWidth() - arrowArea - markWidth), 0, markWidth, getHeight(),
                juce::Justification::centredLeft, false);
}

} // namespace tessarin
