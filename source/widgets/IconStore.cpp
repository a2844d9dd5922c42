#include "IconStore.h"

namespace luna
{

namespace
{
/** Every black, whatever its alpha, so that antialiased edges change too. */
void recolourBlack (juce::Drawable& drawable, juce::Colour colour)
{
    for (auto alpha = 0; alpha < 255; ++alpha)
        drawable.replaceColour (juce::Colours::black.withAlpha (static_cast<juce::uint8> (alpha)),
                                colour.withAlpha (static_cast<juce::uint8> (alpha)));

    drawable.replaceColour (juce::Colours::black, colour);
}
} // namespace

JUCE_IMPLEMENT_SINGLETON (IconStore)

const juce::Drawable& IconStore::get (const char* svgData, size_t svgSize, juce::Colour colour)
{
    auto& coloured = colouredIcons[{ svgData, colour.getARGB() }];

    if (coloured == nullptr)
    {
        auto& icon = icons[svgData];

        if (icon == nullptr)
            icon = juce::Drawable::createFromImageData (svgData, svgSize);

        coloured = icon->createCopy();
        recolourBlack (*coloured, colour);
    }

    return *coloured;
}

} // namespace luna
