#include "TooltipPanel.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"

namespace luna
{

TooltipPanel::TooltipPanel()
{
    for (auto* label : { &tooltipLabel, &statusLabel })
    {
        addAndMakeVisible (*label);
        label->setFont (juce::FontOptions (FontHeights::control));
        label->setInterceptsMouseClicks (false, false);
    }

    statusLabel.setJustificationType (juce::Justification::centredRight);
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

void TooltipPanel::readTextColour()
{
    tooltipLabel.setColour (juce::Label::textColourId, findColour (ColourIds::tooltipTextColourId));
}

void TooltipPanel::layoutContent()
{
    const juce::Rectangle<int> bounds (8, 0, juce::jmax (0, getWidth() - 16), getHeight());
    tooltipLabel.setBounds (bounds);
    statusLabel.setBounds (bounds);
}

} // namespace luna
