#pragma once

#include <juce_graphics/juce_graphics.h>

/** The pixels that the X server shows in an area of a window, and in whatever lies over it. `window`: its X11
    ID; `area`: in the window's pixels, wholly on the screen. Throws if they cannot be had. */
[[nodiscard]] juce::Image takeScreenPicture (unsigned long window, juce::Rectangle<int> area);

/** Lets the program live when the X server refuses something, as the programs of all toolkits do: windows that
    are asked about may be gone. */
void surviveScreenErrors();
