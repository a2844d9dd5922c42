#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

/** Sees that every paint of a window begins at its first pixel, by asking for that pixel too.

    JUCE paints into an image that begins where the area to paint does. Coordinates of curves are then rounded otherwise
    from paint to paint, and a shape that is painted in parts does not fit together. Installed on the window's component
    as if it were a cached image, it hears of every repaint in there, and caches nothing. Message thread.
*/
class PaintOrigin final : public juce::CachedComponentImage
{
public:
    explicit PaintOrigin (juce::Component& window) : owner (window) {}

    void paint (juce::Graphics& g) override { owner.paintEntireComponent (g, false); }

    bool invalidateAll() override { return true; }

    bool invalidate (const juce::Rectangle<int>&) override
    {
        if (auto* peer = owner.getPeer())
            peer->repaint ({ 0, 0, 1, 1 });

        return true;
    }

    void releaseResources() override {}

private:
    juce::Component& owner;
};

} // namespace tessarin
