#include "IconButton.h"

#include "common/ColourIds.h"
#include "widgets/IconStore.h"

namespace luna
{

IconButton::IconButton (const char* data, size_t size)
    : LeftClickButton ("Icon Button"), svgData (data), svgSize (size)
{
    setTriggeredOnMouseDown (true);
}

void IconButton::rightButtonPressed()
{
    if (onRightClick)
        onRightClick();
}

void IconButton::paintButton (juce::Graphics& g, bool isHighlighted, bool isDown)
{
    const auto isToggledOn = getToggleState();
    const auto backgroundId =
        isToggledOn ? juce::TextButton::buttonOnColourId : juce::TextButton::buttonColourId;
    getLookAndFeel().drawButtonBackground (g, *this, findColour (backgroundId), isHighlighted, isDown);

    if (showIconOnlyWhenHot && ! isToggledOn)
        return;

    const auto colour = findColour (! isEnabled() ? ColourIds::disabledTextColourId
                                    : isToggledOn ? ColourIds::highlightedTextColourId
                                                  : ColourIds::textColourId);

    const juce::Rectangle<int> area (iconMargin, iconMargin, juce::jmax (0, getWidth() - 2 * iconMargin),
                                     juce::jmax (0, getHeight() - 2 * iconMargin));
    IconStore::getInstance()
        ->get (svgData, svgSize, colour)
        .drawWithin (g, area.toFloat(), juce::RectanglePlacement::centred, 1.0f);
}

} // namespace luna
