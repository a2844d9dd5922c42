#include "PixelPicture.h"

#include "widgets/PictureDelay.h"

#include <cmath>
#include <cstring>
#include <utility>

namespace luna
{

namespace
{
/** Coordinates that should be whole are off by less. */
constexpr auto tolerance = 0.01f;

/** How many pictures, one inside another, are being painted. */
int numBeingPainted = 0;

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

PixelPicture::PixelPicture (juce::Component& c, std::function<void (juce::Graphics&)> p, Parts partsToPaint)
    : component (c), paint (std::move (p)), parts (partsToPaint)
{
}

PixelPicture::~PixelPicture()
{
    endWaiting();
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
        if (opacity >= 1.0f && isPutOff (newFit))
        {
            paint (g);
            return;
        }

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

/** What is inside a picture that is made is made with it. */
bool PixelPicture::isPutOff (const Fit& newFit)
{
    auto* owner = numBeingPainted == 0 ? component.findParentComponentOfClass<PictureDelay>() : nullptr;

    if (owner == nullptr || ! owner->putsOff (*this, newFit.width * newFit.height))
        return false;

    delay = owner;
    image = {};
    return true;
}

void PixelPicture::endWaiting()
{
    if (auto* owner = std::exchange (delay, nullptr))
        owner->forget (*this);
}

/** Something shows through at the rim of a component that ends between two pixels. */
void PixelPicture::makeImage()
{
    const auto size = component.getLocalBounds().toFloat() * fit.scale;
    const auto fills = juce::jmax (static_cast<float> (fit.width) - size.getWidth(),
                                   static_cast<float> (fit.height) - size.getHeight())
                       < tolerance;

    const auto isFilled = component.isOpaque() && fills;

    endWaiting();
    image = juce::Image (isFilled ? juce::Image::RGB : juce::Image::ARGB, juce::jmax (1, fit.width),
                         juce::jmax (1, fit.height), ! isFilled);
    isBlank = true;
    invalidate();
}

/** An area is a rectangle, or a list of some. */
template <typename Area>
void PixelPicture::paintPart (const Area& pixels)
{
    juce::Graphics g (image);
    g.reduceClipRegion (pixels);

    if (image.hasAlphaChannel() && ! isBlank)
        clear (pixels);

    g.addTransform (juce::AffineTransform::scale (fit.scale).translated (fit.offset));
    paint (g);
}

void PixelPicture::refresh()
{
    constexpr auto tileWidth = 16;
    stalePixels.clear();

    for (const auto& area : stale)
        stalePixels.add (pixelsOf (area));

    stale.clear();

    ++numBeingPainted;

    if (parts == Parts::any)
        paintPart (stalePixels);
    else
        for (auto x = 0; x < image.getWidth(); x += tileWidth)
        {
            const auto tile =
                image.getBounds().withX (x).withWidth (juce::jmin (tileWidth, image.getWidth() - x));

            if (stalePixels.intersectsRectangle (tile))
                paintPart (tile);
        }

    --numBeingPainted;
    isBlank = false;
}

/** JUCE's own way makes all that a painting needs. */
void PixelPicture::clear (juce::Rectangle<int> pixels)
{
    const juce::Image::BitmapData data (image, pixels.getX(), pixels.getY(), pixels.getWidth(),
                                        pixels.getHeight(), juce::Image::BitmapData::writeOnly);

    for (auto y = 0; y < data.height; ++y)
        std::memset (data.getLinePointer (y), 0, static_cast<size_t> (data.width * data.pixelStride));
}

void PixelPicture::clear (const juce::RectangleList<int>& pixels)
{
    for (const auto& area : pixels)
        clear (area);
}

void PixelPicture::invalidate (juce::Rectangle<int> area)
{
    if (image.isValid())
        stale.add (area);
}

void PixelPicture::invalidate()
{
    stale = component.getLocalBounds();
}

void PixelPicture::release()
{
    endWaiting();
    image = {};
}

void bufferToPixels (juce::Component& component, PixelPicture::Parts parts, std::function<void()> onRelease)
{
    component.setCachedComponentImage (new ComponentPicture (component, parts, std::move (onRelease)));
}

} // namespace luna
