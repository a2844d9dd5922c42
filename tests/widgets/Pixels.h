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

/** How many pixels have just this colour. */
inline int count (const juce::Image& image, juce::Rectangle<int> area, juce::Colour colour)
{
    auto number = 0;

    for (auto y = area.getY(); y < area.getBottom(); ++y)
        for (auto x = area.getX(); x < area.getRight(); ++x)
            number += image.getPixelAt (x, y) == colour ? 1 : 0;

    return number;
}

/** Equal but for the rounding of blended colours. */
inline bool areNear (juce::Colour a, juce::Colour b, int tolerance = 2)
{
    return std::abs (a.getRed() - b.getRed()) <= tolerance
           && std::abs (a.getGreen() - b.getGreen()) <= tolerance
           && std::abs (a.getBlue() - b.getBlue()) <= tolerance;
}

/** Where the pictures differ. */
inline juce::Rectangle<int> difference (const juce::Image& a, const juce::Image& b, juce::Rectangle<int> area,
                                        int tolerance = 0)
{
    juce::Rectangle<int> found;

    for (auto y = area.getY(); y < area.getBottom(); ++y)
        for (auto x = area.getX(); x < area.getRight(); ++x)
            if (! areNear (a.getPixelAt (x, y), b.getPixelAt (x, y), tolerance))
                found = found.getUnion ({ x, y, 1, 1 });

    return found;
}

inline juce::Rectangle<int> difference (const juce::Image& a, const juce::Image& b, int tolerance = 0)
{
    return difference (a, b, a.getBounds(), tolerance);
}

/** What shows through where a widget ends between two pixels. */
struct Ground final : juce::Component
{
    Ground() { setOpaque (true); }

    void paint (juce::Graphics& g) override { g.fillAll (black); }
};

/** A picture of the same size, as a test draws it. */
template <typename Paint>
juce::Image drawn (const juce::Image& like, juce::Colour ground, Paint&& paint)
{
    juce::Image image (juce::Image::RGB, like.getWidth(), like.getHeight(), true, juce::SoftwareImageType());
    juce::Graphics g (image);
    g.fillAll (ground);
    paint (g);
    return image;
}

/** Whether the area shows this text, one colour on another, and nothing else. A label fits its text, which places it
    a little otherwise. */
inline bool showsText (const juce::Image& image, juce::Rectangle<int> area, const juce::String& text,
                       juce::Rectangle<int> box, const juce::Font& font, juce::Colour colour,
                       juce::Colour ground, juce::Justification justification = juce::Justification::centred,
                       bool isLabel = false)
{
    const auto expected =
        drawn (image, ground,
               [&] (juce::Graphics& g)
               {
                   g.setColour (colour);
                   g.setFont (font);

                   if (isLabel)
                       g.drawFittedText (text, box, justification,
                                         juce::jmax (1, static_cast<int> (static_cast<float> (box.getHeight())
                                                                          / font.getHeight())));
                   else
                       g.drawText (text, box, justification, true);
               });
    return hasInk (expected, area, ground) && difference (image, expected, area).isEmpty();
}

} // namespace pixels
