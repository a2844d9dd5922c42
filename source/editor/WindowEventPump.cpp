// The window system's headers define macros with everyday names, which go no further than this file.
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include "WindowEventPump.h"

#include <juce_events/native/juce_EventLoopInternal_linux.h>

namespace tessarin
{

namespace
{
/** Null without a server. */
::Display* getDisplay()
{
    const auto* system = juce::XWindowSystem::getInstanceWithoutCreating();
    return system != nullptr ? system->getDisplay() : nullptr;
}
} // namespace

WindowEventPump::WindowEventPump (juce::Component& window)
    : screen (&window, [this] (double now) { look (now); })
{
}

WindowEventPump::~WindowEventPump()
{
    cancelPendingUpdate();
}

void WindowEventPump::look (double now)
{
    constexpr auto secondsBetweenLooks = 0.03;

    if (now < lastLook + secondsBetweenLooks)
        return;

    lastLook = now;

    auto* const display = getDisplay();

    if (display == nullptr)
        return;

    // What is still on its way to us wakes JUCE by itself; what JUCE has to say may wait here for no event at all.
    const auto* x = juce::X11Symbols::getInstance();
    x->xFlush (display);

    if (x->xEventsQueued (display, QueuedAlready) > 0)
        triggerAsyncUpdate();
}

void WindowEventPump::handleAsyncUpdate()
{
    // An event may close the editor and delete this object.
    if (auto* display = getDisplay())
        juce::LinuxEventLoopInternal::invokeEventLoopCallbackForFd (
            juce::X11Symbols::getInstance()->xConnectionNumber (display));
}

} // namespace tessarin
