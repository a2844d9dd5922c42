#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

/** Whether the window that shows the component is on the screen: neither it nor one that it lies in is hidden or minimised,
    which no event tells the inner ones. Asks the X server and waits for its answer. Message thread. */
[[nodiscard]] bool isOnScreen (const juce::Component&);

} // namespace tessarin
