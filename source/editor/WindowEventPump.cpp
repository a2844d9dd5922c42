#include "WindowEventPump.h"

// The window system's headers define macros with everyday names, which go no further than this file.
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_events/native/juce_EventLoopInternal_linux.h>
#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

WindowEventPump::WindowEventPump()
{
    startTimerHz (30);
}

void WindowEventPump::timerCallback()
{
    const auto* system = juce::XWindowSystem::getInstanceWithoutCreating();

    // Without a server there is none.
    if (system == nullptr || system->getDisplay() == nullptr)
        return;

    // What is still on its way to us wakes JUCE by itself; what JUCE has to say may wait here for no event at all.
    const auto* symbols = juce::X11Symbols::getInstance();

    if (symbols->xEventsQueued (system->getDisplay(), QueuedAfterFlush) == 0)
        return;

    // An event may close the editor and delete this object.
    juce::LinuxEventLoopInternal::invokeEventLoopCallbackForFd (
        symbols->xConnectionNumber (system->getDisplay()));
}

} // namespace tessarin
