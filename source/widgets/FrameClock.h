#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <vector>

namespace luna
{

/** One beat for all that moves in a window, so that a frame is one turn of the message loop and one paint.

    A widget that moves has a timer of its own, and needs no clock where it stands alone. The clock stops those timers
    and makes the same calls; what is not showing is left out. Message thread.
*/
class FrameClock final : private juce::Timer
{
public:
    /** Of a frame, and of the timers of widgets that move, in milliseconds. */
    static constexpr int interval = 33;

    /** Takes over everything in the window that runs a timer of that interval, and what it takes over lives as long as the
        clock. `isSeen` is asked about once a second; while it says no, there are no frames. */
    void start (juce::Component& window, std::function<bool()> isSeen);

private:
    struct Mover
    {
        juce::Component* component;
        juce::Timer* timer;
    };

    void takeOver (juce::Component&);
    void timerCallback() override;

    std::function<bool()> isSeen;
    std::vector<Mover> movers;
    int framesToLook = 0;
};

} // namespace luna
