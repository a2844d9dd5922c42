#include "WindowSystemErrors.h"

// The window system's headers define macros with everyday names, which go no further than this file.
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_gui_basics/juce_gui_basics.h>

#include <X11/Xlibint.h>

#include <atomic>

namespace tessarin
{

namespace
{
std::atomic<int> errors { 0 };

/** Runs on the thread that reads from the connection, which is locked meanwhile: no call of the X library may follow.
    Returns whether the answer is dealt with. */
Bool countError (Display*, xReply* answer, char*, int, XPointer)
{
    if (answer->generic.type != X_Error)
        return False;

    ++errors;
    return True;
}

/** The module has one connection at a time, so one link serves. It belongs to the X library while it hangs. */
_XAsyncHandler link { nullptr, countError, nullptr };
} // namespace

void WindowSystemErrors::keepFromHost()
{
    const auto* system = juce::XWindowSystem::getInstanceWithoutCreating();
    auto* connection = system != nullptr ? system->getDisplay() : nullptr;

    if (connection == nullptr)
        return;

    LockDisplay (connection);

    const auto hangs = [connection]
    {
        for (const auto* other = connection->async_handlers; other != nullptr; other = other->next)
            if (other == &link)
                return true;

        return false;
    };

    if (! hangs())
    {
        link.next = connection->async_handlers;
        connection->async_handlers = &link;
    }

    UnlockDisplay (connection);
}

int WindowSystemErrors::takeCount()
{
    return errors.exchange (0);
}

} // namespace tessarin
