#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

/** Whether anything of the window that shows a component can be seen: neither it nor one that it lies in is hidden or
    minimised, and others do not cover it. Message thread.

    The X server tells that a window is covered, uncovered or shown again, but an inner window is not told that it
    goes with one that it lies in: that is asked, which takes a wait for the answer, once a second. Where windows are
    composed, none counts as covered.
*/
class WindowVisibility
{
public:
    explicit WindowVisibility (juce::Component& c) : component (c) {}

    ~WindowVisibility() { forget(); }

    /** Cheap: to be asked in each frame. */
    [[nodiscard]] bool isSeen();

private:
    void watch (unsigned long newWindow);
    void forget();
    [[nodiscard]] bool isOnScreen() const;

    juce::Component& component;

    /** The X server's number of the window that is watched, or 0. */
    unsigned long window = 0;

    /** Of the news by the last look. */
    int numChanges = 0;

    juce::uint32 lastLook = 0;
    bool wasOnScreen = true;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (WindowVisibility)
};

} // namespace tessarin
