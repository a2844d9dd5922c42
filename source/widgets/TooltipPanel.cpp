#include "TooltipPanel.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"

namespace luna
{

namespace
{
constexpr auto markSize = 20;
}

TooltipPanel::TooltipPanel()
{
    for (auto* label : { &tooltipLabel, &statusLabel, &markLabel })
    {
        addAndMakeVisible (*label);
        label->setFont (juce::FontOptions (FontHeights::control));
        label->setInterceptsMouseClicks (false, false);
    }

    statusLabel.setJustificationType (juce::Justification::centredRight);
    markLabel.setJustificationType (juce::Justification::centred);
    markLabel.setBorderSize ({});
    markLabel.setVisible (false);
    readTextColour();
    startTimer (33);
}

void TooltipPanel::refresh()
{
    if (auto* component = juce::Desktop::getInstance().getMainMouseSource().getComponentUnderMouse())
    {
        auto* client = dynamic_cast<juce::TooltipClient*> (component);
        tooltipLabel.setText (client != nullptr ? client->getTooltip() : juce::String(),
                              juce::dontSendNotification);
    }

    if (hideStatusWhenTooltipShown)
        statusLabel.setVisible (tooltipLabel.getText().isEmpty());
}

void TooltipPanel::lookAndFeelChanged()
{
    Panel::lookAndFeelChanged();
    readTextColour();
}

void TooltipPanel::setMark (const juce::String& letter)
{
    markLabel.setText (letter, juce::dontSendNotification);
    markLabel.setVisible (letter.isNotEmpty());

    // A text of licensing ends before it.
    auto border = tooltipLabel.getBorderSize();
    border.setRight (border.getRight() + (letter.isEmpty() ? 0 : 2 * markSize));
    statusLabel.setBorderSize (border);
}

void TooltipPanel::readTextColour()
{
    const auto colour = findColour (ColourIds::tooltipTextColourId);

    tooltipLabel.setColour (juce::Label::textColourId, colour);
    markLabel.setColour (juce::Label::textColourId, colour);
}

void TooltipPanel::layoutContent()
{
    const juce::Rectangle<int> bounds (8, 0, juce::jmax (0, getWidth() - 16), getHeight());
    tooltipLabel.setBounds (bounds);
    statusLabel.setBounds (bounds);

    // The window's corner, at which it is resized, lies to the right.
    const auto end = bounds.getRight() - markSize / 2;
    markLabel.setBounds (end - markSize, (getHeight() - markSize) / 2, markSize, markSize);
}

} // namespace luna
