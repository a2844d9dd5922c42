#include "Screen.h"

#include "Failure.h"
#include "XLibrary.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <memory>

namespace
{
juce::Image copyOf (const XImage& pixels)
{
    if (pixels.bits_per_pixel != 32 || pixels.red_mask != 0xff0000 || pixels.blue_mask != 0xff)
        throw Failure ("the screen's pixels are not of 8 bits for each colour");

    juce::Image image (juce::Image::RGB, pixels.width, pixels.height, false, juce::SoftwareImageType());
    juce::Image::BitmapData bits (image, juce::Image::BitmapData::writeOnly);

    for (auto y = 0; y < pixels.height; ++y)
    {
        const auto* line = reinterpret_cast<const juce::uint32*> (pixels.data + y * pixels.bytes_per_line);

        for (auto x = 0; x < pixels.width; ++x)
            bits.setPixelColour (x, y, juce::Colour (line[x] | 0xff000000));
    }

    return image;
}
} // namespace

juce::Image takeScreenPicture (unsigned long window, juce::Rectangle<int> area)
{
    const std::unique_ptr<Display, int (*) (Display*)> display (
        findX11<decltype (XOpenDisplay)> ("XOpenDisplay") (nullptr),
        findX11<decltype (XCloseDisplay)> ("XCloseDisplay"));

    if (display == nullptr)
        throw Failure ("there is no X server to take a picture from");

    const auto root = DefaultRootWindow (display.get());
    const juce::Rectangle<int> screen (DisplayWidth (display.get(), DefaultScreen (display.get())),
                                       DisplayHeight (display.get(), DefaultScreen (display.get())));
    auto x = 0, y = 0;
    Window child = 0;

    if (! findX11<decltype (XTranslateCoordinates)> ("XTranslateCoordinates") (
            display.get(), window, root, area.getX(), area.getY(), &x, &y, &child)
        || ! screen.contains (area.withPosition (x, y)))
        throw Failure ("the window is not wholly on the screen, which is " + juce::String (screen.getWidth())
                       + "x" + juce::String (screen.getHeight()));

    auto* pixels = findX11<decltype (XGetImage)> ("XGetImage") (
        display.get(), root, x, y, static_cast<unsigned int> (area.getWidth()),
        static_cast<unsigned int> (area.getHeight()), AllPlanes, ZPixmap);

    if (pixels == nullptr)
        throw Failure ("the X server gave no picture of the window");

    const std::unique_ptr<XImage, int (*) (XImage*)> owner (pixels, pixels->f.destroy_image);
    return copyOf (*pixels);
}

void surviveScreenErrors()
{
    findX11<decltype (XSetErrorHandler)> ("XSetErrorHandler") ([] (Display*, XErrorEvent*) { return 0; });
}
