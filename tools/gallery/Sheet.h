#pragma once

#include "OffscreenWindow.h"

#include <functional>
#include <memory>
#include <vector>

/** One widget in one state. */
struct Exhibit
{
    juce::String caption;
    int width = 0;
    int height = 0;
    std::function<std::unique_ptr<juce::Component>()> make;

    /** Brings the widget into its state, with mouse and keys where that takes them; may be empty. */
    std::function<void (OffscreenWindow&, juce::Component&)> pose;
};

/** One widget in all its states. */
struct Sheet
{
    juce::String name;
    std::vector<Exhibit> exhibits;
};

/** Draws a sheet's widgets side by side with their captions, each in a window of its own, in the default look
    and feel. */
[[nodiscard]] juce::Image renderSheet (const Sheet& sheet, float scale);
