// The window system's headers define macros with everyday names, which go no further than this file.
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include "WindowVisibility.h"

#include "common/WindowSystemNews.h"

#include <utility>

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

bool WindowVisibility::isSeen()
{
    constexpr juce::uint32 millisecondsBetweenLooks = 1000;
    auto* peer = component.getPeer();

    if (peer == nullptr || getDisplay() == nullptr)
        return false;

    const auto shownIn =
        static_cast<unsigned long> (reinterpret_cast<juce::pointer_sized_uint> (peer->getNativeHandle()));
    const auto isNew = shownIn != window;

    if (isNew)
        watch (shownIn);

    const auto& view = windowViews[window];
    const auto now = juce::Time::getMillisecondCounter();

    if (isNew || view.numChanges != std::exchange (numChanges, view.numChanges)
        || now - lastLook >= millisecondsBetweenLooks)
    {
        lastLook = now;
        wasOnScreen = isOnScreen();
    }

    return wasOnScreen && ! view.isCovered;
}

/** JUCE asks for other events, which it goes on to get. */
void WindowVisibility::watch (unsigned long newWindow)
{
    forget();
    window = newWindow;

    XWindowAttributes attributes {};
    const auto* x = juce::X11Symbols::getInstance();
    const juce::XWindowSystemUtilities::ScopedXLock lock;

    if (x->xGetWindowAttributes (getDisplay(), window, &attributes) != 0)
        x->xSelectInput (getDisplay(), window, attributes.your_event_mask | VisibilityChangeMask);
}

void WindowVisibility::forget()
{
    windowViews.erase (window);
}

bool WindowVisibility::isOnScreen() const
{
    XWindowAttributes attributes {};
    const juce::XWindowSystemUtilities::ScopedXLock lock;
    return juce::X11Symbols::getInstance()->xGetWindowAttributes (getDisplay(), window, &attributes) != 0
           && attributes.map_state == IsViewable;
}

} // namespace tessarin
