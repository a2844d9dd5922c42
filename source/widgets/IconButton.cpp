#include "IconButton.h"

#include "common/ColourIds.h"

namespace luna
{

IconButton::IconButton (const char* svgData, size_t svgSize)
    : LeftClickButton ("Icon Button"), icon (juce::Drawable::createFromImageData (svgData, svgSize))
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
    getTintedIcon (colour).drawWithin (g, area.toFloat(), juce::RectanglePlacement::centred, 1.0f);
}

const juce::Drawable& IconButton::getTintedIcon (juce::Colour colour)
{
    if (tintedIcon == nullptr || tint != colour)
    {
        tintedIcon = icon->createCopy();
        tint = colour;
        recolourBlack (*tintedIcon, colour);
    }

    return *tintedIcon;
}

void recolourBlack (juce::Drawable& drawable, juce::Colour colour)
{
    for (auto alpha = 0; alpha < 255; ++alpha)
        drawable.replaceColour (juce::Colours::black.withAlpha (static_cast<juce::uint8> (alpha)),
                                colour.withAlpha (static_cast<juce::uint8> (alpha)));

    drawable.replaceColour (juce::Colours::black, colour);
}

} // namespace luna
