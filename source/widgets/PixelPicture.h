#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

namespace luna
{

class PictureDelay;

/** Something painted, kept on the pixels of the screen.

    It is what would be painted without it, at any scale. An image that begins at the component's corner, as JUCE
    keeps them, may lie between two pixels, and is then resampled into a softer one. Message thread.
*/
class PixelPicture final
{
public:
    /** How it is painted anew where it has changed.

        JUCE rounds the first and last pixel of a row otherwise than those between, so a curve that is painted in
        parts shows by one level of brightness where it was cut. Tiles are always cut at the same columns: painted at
        once or in parts, the picture is the same. */
    enum class Parts
    {
        any,
        tiles
    };

    /** `paint` draws all of `component`, which outlives this. */
    PixelPicture (juce::Component& component, std::function<void (juce::Graphics&)> paint,
                  Parts = Parts::any);
    ~PixelPicture();

    /** At its place in the component. In a window that puts its pictures off, a new one is painted there instead. */
    void draw (juce::Graphics&, float opacity = 1.0f);

    /** In the component's units. */
    void invalidate (juce::Rectangle<int> area);
    void invalidate();

    /** Its memory, until it is drawn again. */
    void release();

    // For the delay in which it waits.
    void stopWaiting() { delay = nullptr; }

    void makeAnew() { component.repaint(); }

private:
    /** How the component lies on the pixels that it touches. */
    struct Fit
    {
        float scale = 0.0f;

        /** From the first pixel to the component's corner, in pixels. */
        juce::Point<float> offset;

        int width = 0, height = 0;

        bool operator== (const Fit&) const = default;
    };

    [[nodiscard]] Fit getFit (float scale) const;
    [[nodiscard]] juce::Rectangle<int> pixelsOf (juce::Rectangle<int> area) const;
    [[nodiscard]] bool isPutOff (const Fit&);
    void endWaiting();
    void makeImage();
    void refresh();
    template <typename Area>
    void paintPart (const Area& pixels);

    void clear (juce::Rectangle<int> pixels);
    void clear (const juce::RectangleList<int>& pixels);

    juce::Component& component;
    const std::function<void (juce::Graphics&)> paint;
    const Parts parts;
    juce::Image image;
    Fit fit;

    /** Nothing has been painted on it. */
    bool isBlank = true;

    /** Null if it does not wait. */
    PictureDelay* delay = nullptr;

    /** In the component's units. */
    juce::RectangleList<int> stale;

    /** The same in the image's pixels, kept for its storage. */
    juce::RectangleList<int> stalePixels;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (PixelPicture)
};

/** Keeps what the component and its children paint, in place of juce::Component::setBufferedToImage. `onRelease` is
    called when the component is hidden, with whatever it lies in, and the picture is let go. */
void bufferToPixels (juce::Component&, PixelPicture::Parts = PixelPicture::Parts::any,
                     std::function<void()> onRelease = {});

} // namespace luna
