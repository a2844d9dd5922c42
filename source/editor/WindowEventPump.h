#pragma once

#include <juce_events/juce_events.h>

namespace tessarin
{

/** Sees that no event of the window system is left lying.

    JUCE looks for events when its connection to the X server has something to read. Whenever it asks whether the
    server is through with a frame, or where the pointer is, the X library takes all that has come from the connection
    into a queue of its own; a click that came just then would lie there until the next event. Message thread.
*/
class WindowEventPump final : private juce::Timer
{
public:
    WindowEventPump();

private:
    void timerCallback() override;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (WindowEventPump)
};

} // namespace tessarin
