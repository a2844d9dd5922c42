#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <utility>

namespace tessarin
{

/** Sees that every paint of a window begins at its first pixel, by asking for that pixel too.

    JUCE paints into an image that begins where the area to paint does. Coordinates of curves are then rounded otherwise
    from paint to paint, and a shape that is painted in parts does not fit together. Installed on the window's component
    as if it were a cached image, it hears of every repaint in there, and caches nothing.

    The image is as large as the largest paint. For each step of a window that grows, JUCE would get a new one from the
    system, which takes longer than to paint some of what is in it. So a paint of another size ends at a pixel beyond the
    window, where nothing shows, and the image has room for some steps. Message thread.
*/
class PaintOrigin final : public juce::CachedComponentImage
{
public:
    explicit PaintOrigin (juce::Component& window) : owner (window) {}

    void paint (juce::Graphics& g) override { owner.paintEntireComponent (g, false); }

    bool invalidateAll() override
    {
        const auto& window = *owner.getTopLevelComponent();
        const juce::Point size (window.getWidth(), window.getHeight());

        if (size != std::exchange (lastSize, size) && window.getPeer() != nullptr)
            window.getPeer()->repaint ({ roundUp (size.x) - 1, roundUp (size.y) - 1, 1, 1 });

        return true;
    }

    bool invalidate (const juce::Rectangle<int>&) override
    {
        if (auto* peer = owner.getPeer())
            peer->repaint ({ 0, 0, 1, 1 });

        return true;
    }

    void releaseResources() override {}

private:
    static int roundUp (int length)
    {
        constexpr auto step = 256;
        return (length / step + 1) * step;
    }

    juce::Component& owner;
    juce::Point<int> lastSize;
};

} // namespace tessarin
