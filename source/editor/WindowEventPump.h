#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

/** Sees that no event of the window system is left lying.

    JUCE looks for events when its connection to the X server has something to read. Whenever it asks whether the
    server is through with a frame, or where the pointer is, the X library takes all that has come from the connection
    into a queue of its own; a click that came just then would lie there until the next event. Looks once a
    frame. Message thread.
*/
class WindowEventPump final : private juce::AsyncUpdater
{
public:
    explicit WindowEventPump (juce::Component& window);
    ~WindowEventPump() override;

private:
    void look (double now);
    void handleAsyncUpdate() override;

    /** In the screen's time, in seconds. */
    double lastLook = 0.0;
    juce::VBlankAttachment screen;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (WindowEventPump)
};

} // namespace tessarin
