#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <vector>

namespace luna
{

/** One beat for all that moves in a window, so that a frame is one turn of the message loop and one paint.

    A widget that moves has a timer of its own, and needs no clock where it stands alone. The clock stops those timers
    when the window is on a screen, and makes the same calls as often, just before the screen is painted; what is not
    visible is left out. Without a window there is no beat. Message thread.
*/
class FrameClock final
{
public:
    /** Of the timers that it takes over, in milliseconds, and between two frames. */
    static constexpr int interval = 33;

    /** What moves in the window lives as long as the clock. `isSeen` is asked before each frame, of which there is
        none if it says no. `onBegin` is called once, before the window is painted for the first time. */
    FrameClock (juce::Component& window, std::function<bool()> isSeen, std::function<void()> onBegin);

    /** Whether the window is on a screen. */
    [[nodiscard]] bool hasBegun() const noexcept { return ! movers.empty(); }

private:
    struct Mover
    {
        juce::Component* component;
        juce::Timer* timer;
    };

    void takeOver (juce::Component&);
    void beat (double now);
    void showFrame();

    juce::Component& window;
    std::function<bool()> isSeen;
    std::function<void()> onBegin;
    std::vector<Mover> movers;

    /** In the screen's time, in seconds. */
    double nextFrame = 0.0;

    juce::VBlankAttachment screen;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (FrameClock)
};

} // namespace luna
