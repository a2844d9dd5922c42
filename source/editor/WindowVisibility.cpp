// The window system's headers define macros with everyday names, which go no further than this file.
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include "WindowVisibility.h"

namespace tessarin
{

bool isOnScreen (const juce::Component& component)
{
    const auto* system = juce::XWindowSystem::getInstanceWithoutCreating();
    auto* peer = component.getPeer();

    if (system == nullptr || system->getDisplay() == nullptr || peer == nullptr)
        return false;

    const auto window =
        static_cast<::Window> (reinterpret_cast<juce::pointer_sized_uint> (peer->getNativeHandle()));
    XWindowAttributes attributes {};
    const juce::XWindowSystemUtilities::ScopedXLock lock;
    return juce::X11Symbols::getInstance()->xGetWindowAttributes (system->getDisplay(), window, &attributes)
               != 0
           && attributes.map_state == IsViewable;
}

} // namespace tessarin
