#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

namespace tessarin::ThemeColours
{
/** One of the system's own colours, and the theme's key for it. */
struct SystemColour
{
    int id;
    const char* key;
};

/** All 27, in the order in which they are set. */
[[nodiscard]] const std::vector<SystemColour>& getSystemColours();

/** Fills a look and feel's table: the system's own colours through `resolve`, which takes a key such as
    "theme.primary", then the identifiers of JUCE and of the widgets that are copies of them. */
void apply (juce::LookAndFeel& lookAndFeel, const std::function<juce::Colour (const juce::String&)>& resolve);

} // namespace tessarin::ThemeColours
