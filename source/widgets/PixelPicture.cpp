#include "PixelPicture.h"

#include <cmath>
#include <utility>

namespace luna
{

namespace
{
/** Coordinates that should be whole are off by less. */
constexpr auto tolerance = 0.01f;

juce::Rectangle<int> pixelsTouched (juce::Rectangle<float> area)
{
    const auto first = [] (float x) { return static_cast<int> (std::floor (x + tolerance)); };
    const auto end = [] (float x) { return static_cast<int> (std::ceil (x - tolerance)); };
    return juce::Rectangle<int>::leftTopRightBottom (first (area.getX()), first (area.getY()),
                                                     end (area.getRight()), end (area.getBottom()));
}

/** Hears of what the component has to paint anew. */
class ComponentPicture final : public juce::CachedComponentImage
{
public:
    ComponentPicture (juce::Component& c, PixelPicture::Parts parts, std::function<void()> release)
        : component (c), onRelease (std::move (release)), picture (c, paintAll, parts)
    {
    }

    void paint (juce::Graphics& g) override { picture.draw (g, component.getAlpha()); }

    bool invalidateAll() override
    {
        picture.invalidate();
        return true;
    }

    bool invalidate (const juce::Rectangle<int>& area) override
    {
        picture.invalidate (area);
        return true;
    }

    void releaseResources() override
    {
        picture.release();

        if (onRelease != nullptr)
            onRelease();
    }

private:
    juce::Component& component;
    const std::function<void()> onRelease;
    const std::function<void (juce::Graphics&)> paintAll = [this] (juce::Graphics& g)
    { component.paintEntireComponent (g, true); };
    PixelPicture picture;
};
} // namespace

PixelPicture::PixelPicture (const juce::Component& c, std::function<void (juce::Graphics&)> p,
                            Parts partsToPaint)
    : component (c), paint (std::move (p)), parts (partsToPaint)
{
}

/** The window begins on a whole pixel. */
PixelPicture::Fit PixelPicture::getFit (float scale) const
{
    const auto& window = *component.getTopLevelComponent();
    const auto corner = window.getLocalPoint (&component, juce::Point<float>());
    const auto unit = window.getLocalPoint (&component, juce::Point<float> (1.0f, 0.0f)).x - corner.x;
    const auto area = component.getLocalBounds().toFloat() * scale + corner * (scale / unit);
    const auto pixels = pixelsTouched (area);
    return { scale, area.getPosition() - pixels.getPosition().toFloat(), pixels.getWidth(),
             pixels.getHeight() };
}

/** In the image. */
juce::Rectangle<int> PixelPicture::pixelsOf (juce::Rectangle<int> area) const
{
    return pixelsTouched (area.toFloat() * fit.scale + fit.offset).getIntersection (image.getBounds());
}

void PixelPicture::draw (juce::Graphics& g, float opacity)
{
    const auto newFit = getFit (g.getInternalContext().getPhysicalPixelScaleFactor());

    if (image.isNull() || newFit != fit)
    {
        fit = newFit;
        makeImage();
    }

    if (! stale.isEmpty())
        refresh();

    // JUCE looks at all rows of an image, however few are to be drawn.
    const auto part = pixelsOf (g.getClipBounds());

    if (part.isEmpty())
        return;

    // Whole pixels go to whole pixels, and are copied.
    const auto corner = part.getPosition().toFloat() - fit.offset;
    g.setImageResamplingQuality (juce::Graphics::lowResamplingQuality);
    g.setOpacity (opacity);
    g.drawImageTransformed (image.getClippedImage (part),
                            juce::AffineTransform::translation (corner).scaled (1.0f / fit.scale), false);
}

/** Something shows through at the rim of a component that ends between two pixels. */
void PixelPicture::makeImage()
{
    const auto size = component.getLocalBounds().toFloat() * fit.scale;
    const auto fills = juce::jmax (static_cast<float> (fit.width) - size.getWidth(),
                                   static_cast<float> (fit.height) - size.getHeight())
                       < tolerance;

    image = juce::Image (component.isOpaque() && fills ? juce::Image::RGB : juce::Image::ARGB,
                         juce::jmax (1, fit.width), juce::jmax (1, fit.height), true);
    invalidate();
}

void PixelPicture::refresh()
{
    constexpr auto tileWidth = 16;
    juce::RectangleList<int> pixels;

    for (const auto& area : stale)
        pixels.add (pixelsOf (area));

    stale.clear();

    if (parts == Parts::any)
    {
        paintPart (pixels);
        return;
    }

    for (auto x = 0; x < image.getWidth(); x += tileWidth)
    {
        const juce::Rectangle<int> tile (x, 0, tileWidth, image.getHeight());

        if (pixels.intersectsRectangle (tile))
            paintPart (tile);
    }
}

void PixelPicture::paintPart (const juce::RectangleList<int>& pixels)
{
    juce::Graphics g (image);
    g.reduceClipRegion (pixels);

    if (image.hasAlphaChannel())
        for (const auto& area : pixels)
            image.clear (area);

    g.addTransform (juce::AffineTransform::scale (fit.scale).translated (fit.offset));
    paint (g);
}

void PixelPicture::invalidate (juce::Rectangle<int> area)
{
    stale.add (area);
}

void PixelPicture::invalidate()
{
    stale = component.getLocalBounds();
}

void PixelPicture::release()
{
    image = {};
}

void bufferToPixels (juce::Component& component, PixelPicture::Parts parts, std::function<void()> onRelease)
{
    component.setCachedComponentImage (new ComponentPicture (component, parts, std::move (onRelease)));
}

} // namespace luna
