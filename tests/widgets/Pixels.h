#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <cmath>
#include <utility>
#include <vector>

/** What the tests of drawn widgets read from a picture. */
namespace pixels
{
inline const juce::Colour black { 0xff000000 };

/** Where the colours down a column or along a row begin, and which they are. */
using Runs = std::vector<std::pair<int, juce::uint32>>;

inline Runs runs (const juce::Image& image, bool isColumn, int at)
{
    Runs found;

    for (auto i = 0; i < (isColumn ? image.getHeight() : image.getWidth()); ++i)
    {
        const auto colour = (isColumn ? image.getPixelAt (at, i) : image.getPixelAt (i, at)).getARGB();

        if (found.empty() || found.back().second != colour)
            found.emplace_back (i, colour);
    }

    return found;
}

/** The positions down a column or along a row that differ from the ground. */
inline std::vector<int> marks (const juce::Image& image, bool isColumn, int at, juce::Range<int> range,
                               juce::Colour ground = black)
{
    std::vector<int> found;

    for (auto i = range.getStart(); i < range.getEnd(); ++i)
        if ((isColumn ? image.getPixelAt (at, i) : image.getPixelAt (i, at)) != ground)
            found.push_back (i);

    return found;
}

inline bool hasInk (const juce::Image& image, juce::Rectangle<int> area, juce::Colour ground = black)
{
    for (auto y = area.getY(); y < area.getBottom(); ++y)
        if (! marks (image, false, y, area.getHorizontalRange(), ground).empty())
            return true;

    return false;
}

/** Equal but for the rounding of blended colours. */
inline bool areNear (juce::Colour a, juce::Colour b, int tolerance = 2)
{
    return std::abs (a.getRed() - b.getRed()) <= tolerance
           && std::abs (a.getGreen() - b.getGreen()) <= tolerance
           && std::abs (a.getBlue() - b.getBlue()) <= tolerance;
}
} // namespace pixels
