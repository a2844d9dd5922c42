#pragma once

#include <juce_graphics/juce_graphics.h>

#include <algorithm>
#include <cmath>

/** The contrast between a text or a mark and its ground, as WCAG 2.1 has it. */
namespace luna::Contrast
{
/** The ratio that every text of our own choice reaches. */
inline constexpr auto required = 4.5;

/** That of edges, marks and rings. */
inline constexpr auto requiredOfMarks = 3.0;

[[nodiscard]] inline double luminanceOf (juce::Colour colour)
{
    const auto linear = [] (juce::uint8 channel)
    {
        const auto c = static_cast<double> (channel) / 255.0;
        return c <= 0.03928 ? c / 12.92 : std::pow ((c + 0.055) / 1.055, 2.4);
    };

    return 0.2126 * linear (colour.getRed()) + 0.7152 * linear (colour.getGreen())
           + 0.0722 * linear (colour.getBlue());
}

[[nodiscard]] inline double ratio (juce::Colour a, juce::Colour b)
{
    const auto [darker, lighter] = std::minmax ({ luminanceOf (a), luminanceOf (b) });
    return (lighter + 0.05) / (darker + 0.05);
}

/** Whichever of the two is the clearer on the ground. */
[[nodiscard]] inline juce::Colour clearer (juce::Colour a, juce::Colour b, juce::Colour ground)
{
    return ratio (a, ground) < ratio (b, ground) ? b : a;
}

/** The colour, moved away from the ground by as many steps as a mark or a text needs there. */
[[nodiscard]] inline juce::Colour moveAway (juce::Colour colour, juce::Colour ground,
                                            double leastRatio = requiredOfMarks)
{
    constexpr auto step = 0.05f;
    constexpr auto mostSteps = 100;
    const auto goesUp = ratio (juce::Colours::white, ground) > ratio (juce::Colours::black, ground);

    for (auto i = 0; i < mostSteps && ratio (colour, ground) < leastRatio; ++i)
        colour = goesUp ? colour.brighter (step) : colour.darker (step);

    return colour;
}

/** The fill, darker by as many steps as a light text on it needs. `shown` gives the colour that the text will
    stand on, if that is not the fill itself. */
template <typename Shown>
[[nodiscard]] juce::Colour darkenFor (juce::Colour text, juce::Colour fill, Shown&& shown)
{
    constexpr auto step = 0.05f;

    while (ratio (text, shown (fill)) < required && fill.getBrightness() > 0.0f)
        fill = fill.darker (step);

    return fill;
}

[[nodiscard]] inline juce::Colour darkenFor (juce::Colour text, juce::Colour fill)
{
    return darkenFor (text, fill, [] (juce::Colour colour) { return colour; });
}
} // namespace luna::Contrast
