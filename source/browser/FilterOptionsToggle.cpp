#include "FilterOptionsToggle.h"

namespace tessarin
{

namespace
{
constexpr auto gap = 2;
}

FilterOptionsToggle::FilterOptionsToggle (const juce::String& leftText, const juce::String& rightText)
    : left (leftText), right (rightText)
{
    addAndMakeVisible (left);
    addAndMakeVisible (right);
    left.selected = true;
    left.onLeftClick = [this] { select (true); };
    right.onLeftClick = [this] { select (false); };
}

int FilterOptionsToggle::getIdealWidth() const
{
    return left.getIdealWidth() + gap + right.getIdealWidth();
}

void FilterOptionsToggle::resized()
{
    auto bounds = getLocalBounds();
    left.setBounds (bounds.removeFromLeft (left.getIdealWidth()));
    right.setBounds (bounds.withTrimmedLeft (gap));
}

void FilterOptionsToggle::select (bool leftOne)
{
    if (left.selected == leftOne)
        return;

    left.setSelected (leftOne, juce::dontSendNotification);
    right.setSelected (! leftOne, juce::dontSendNotification);

    if (onChange)
        onChange();
}

} // namespace tessarin
