#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <cmath>

namespace luna
{

/** Columns of a widget that are painted together, and repainted together.

    JUCE rounds the colour of the first and last pixel of a row otherwise than those between, so a curve that is painted in
    parts shows by one level of brightness where it was cut. A widget that moves paints its curves tile by tile, however
    much there is to paint, and asks for whole tiles: its picture is the same, painted at once or in parts. Message thread.
*/
class PaintTiles
{
public:
    explicit PaintTiles (juce::Component& c) : component (c) {}

    /** Calls `paint` with the columns of each tile that has something to paint, and clips to it. */
    template <typename Paint>
    void paint (juce::Graphics& g, Paint&& paintTile) const
    {
        const auto clip = g.getClipBounds();
        const auto width = getWidth();

        for (auto x = clip.getX() / width * width; x < clip.getRight(); x += width)
        {
            const juce::Graphics::ScopedSaveState state (g);

            if (g.reduceClipRegion (x, 0, width, component.getHeight()))
                paintTile (juce::Range<int> (x, x + width));
        }
    }

    /** Of what lies in these columns. */
    void repaint (juce::Range<int> columns) const
    {
        const auto width = getWidth();
        const auto first = juce::jmax (0, columns.getStart()) / width * width;
        const auto end = (columns.getEnd() + width - 1) / width * width;
        component.repaint (first, 0, end - first, component.getHeight());
    }

    /** Where a fill has grown or shrunk. */
    void repaintDifference (juce::Rectangle<int> before, juce::Rectangle<int> now) const
    {
        if (before == now)
            return;

        juce::RectangleList<int> difference (before.getUnion (now));
        difference.subtract (before.getIntersection (now));

        for (const auto& area : difference)
            repaint (area.getHorizontalRange());
    }

private:
    /** All there is, where a tile might begin between two of the screen's pixels: tiles overlap there, and what shines
        through would be painted twice. */
    [[nodiscard]] int getWidth() const
    {
        constexpr auto tileWidth = 16;
        const auto* peer = component.getPeer();
        const auto scale = juce::Component::getApproximateScaleFactorForComponent (&component)
                           * static_cast<float> (peer != nullptr ? peer->getPlatformScaleFactor() : 1.0);
        const auto isWhole = std::abs (scale - std::round (scale)) < 1.0e-3f;
        return isWhole ? tileWidth : juce::jmax (1, component.getWidth());
    }

    juce::Component& component;
};

} // namespace luna
