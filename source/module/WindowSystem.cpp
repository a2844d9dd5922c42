#include "WindowSystem.h"

#include "common/HostKeys.h"
#include "common/WindowSystemNews.h"
#include "module/KeyText.h"

// The window system's headers define macros with everyday names, which go no further than this file.
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_gui_basics/juce_gui_basics.h>

#include <bitset>
#include <cstring>
#include <utility>

// It defines more of them.
#include <X11/Xlibint.h>

// JUCE asks the X server about windows of other programs, such as the one that has the focus, and any of them may be
// gone before the question arrives. The X library hands such an error to the one error handler of the process. A
// program made with JUCE brings a handler that ignores it; in a plug-in the handler is the host's, and most end the
// process.
//
// JUCE looks up the functions of the X library by name. Some it gets from here instead (the module is linked with
// "--wrap=dlsym"), so that errors of JUCE's connection stay with that connection and fewer come about. The handler of
// the process, other connections and other plug-ins are not concerned. A connection that breaks stays the host's
// affair.
//
// The server gives a key to the window with the focus, which is ours after a click into it, and to no other. JUCE has
// no use for one that no component wants, so it is sent on to the window around ours from here, with its release.

namespace
{
// As JUCE declares them.
juce::X11Symbols::XOpenDisplay openDisplay = nullptr;
juce::X11Symbols::XGetInputFocus getInputFocus = nullptr;
juce::X11Symbols::XGetWindowProperty getWindowProperty = nullptr;
juce::X11Symbols::XLookupString lookupString = nullptr;
juce::X11Symbols::XNextEvent nextEvent = nullptr;

/** An event's type, whose name in the X library is a class of JUCE's. */
constexpr auto keyPress = 2;

/** The last key that came from the keyboard, and those whose release belongs to the host. Message thread. */
XKeyEvent heardKey {};
std::bitset<256> passedKeys;

/** What JUCE sets to hear of errors itself, while it tries shared memory. */
std::atomic<XErrorHandler> trap { nullptr };

/** Runs on the thread that reads from the connection, which is locked meanwhile: no call of the X library may follow.
    Returns whether the answer is dealt with. */
Bool takeError (Display* connection, xReply* answer, char*, int, XPointer)
{
    if (answer->generic.type != X_Error)
        return False;

    const auto& error = answer->error;
    XErrorEvent event {};
    event.type = X_Error;
    event.display = connection;
    event.resourceid = error.resourceID;
    event.error_code = error.errorCode;
    event.request_code = error.majorCode;
    event.minor_code = static_cast<unsigned char> (error.minorCode);

    if (const auto handler = trap.load())
        handler (connection, &event);
    else
        ++tessarin::windowSystemErrors;

    return True;
}

/** The module has one connection at a time, so one link serves. It belongs to the X library while the connection is
    open, which ends before the module does. */
_XAsyncHandler link { nullptr, takeError, nullptr };

/** The X library asks a connection's own handlers before the process's. Nobody else knows the connection yet. */
Display* openGuardedDisplay (const char* name)
{
    auto* connection = openDisplay (name);

    if (connection != nullptr)
    {
        link.next = connection->async_handlers;
        connection->async_handlers = &link;
    }

    return connection;
}

XErrorHandler setTrap (XErrorHandler handler)
{
    return trap.exchange (handler);
}

/** Null if the window is not one of JUCE's. */
juce::ComponentPeer* findPeer (Window window)
{
    for (auto i = juce::ComponentPeer::getNumPeers(); --i >= 0;)
        if (auto* peer = juce::ComponentPeer::getPeer (i);
            reinterpret_cast<Window> (peer->getNativeHandle()) == window)
            return peer;

    return nullptr;
}

/** JUCE goes on to ask which of the focused window's parents is ours. No window of another program lies in one of ours,
    so that only our own are worth a further question. Message thread. */
void getOwnInputFocus (Display* connection, Window* focused, int* revert)
{
    getInputFocus (connection, focused, revert);

    if (*focused != None && *focused != PointerRoot && findPeer (*focused) == nullptr)
        *focused = None;
}

/** Whether the window lies in the host's. A window of JUCE's own has a bar, a place on the taskbar, or is temporary. */
bool isEmbedded (Window window)
{
    using Peer = juce::ComponentPeer;

    const auto* peer = findPeer (window);
    return peer != nullptr
           && (peer->getStyleFlags()
               & (Peer::windowAppearsOnTaskbar | Peer::windowIsTemporary | Peer::windowHasTitleBar))
                  == 0;
}

/** JUCE asks for each component that it moves whether the window manager has hidden the window, and waits for the
    answer. No window manager writes a state to a window that lies in another. Message thread. */
int getOwnProperty (Display* connection, Window window, Atom property, long offset, long length,
                    Bool isDeleted, Atom wantedType, Atom* type, int* format, unsigned long* numItems,
                    unsigned long* numBytesLeft, unsigned char** data)
{
    const auto* system = juce::XWindowSystem::getInstanceWithoutCreating();

    if (system == nullptr || property != system->getAtoms().windowState || ! isEmbedded (window))
        return getWindowProperty (connection, window, property, offset, length, isDeleted, wantedType, type,
                                  format, numItems, numBytesLeft, data);

    *type = None;
    *format = 0;
    *numItems = *numBytesLeft = 0;
    *data = nullptr;
    return Success;
}

/** JUCE does not ask for this event, and passes it over. Message thread. */
int noteVisibility (Display* connection, XEvent* event)
{
    const auto result = nextEvent (connection, event);

    if (event->type == VisibilityNotify)
        if (const auto found = tessarin::windowViews.find (event->xvisibility.window);
            found != tessarin::windowViews.end())
            found->second = { event->xvisibility.state == VisibilityFullyObscured,
                              found->second.numChanges + 1 };

    return result;
}

/** Gives the text in UTF-8, as JUCE reads it, where the library has none to give in the host's locale. Some of the
    digits have a text even while Ctrl is held, which text fields would take. */
int lookupText (XKeyEvent* event, const char* text, int size, KeySym* symbol, XComposeStatus* status)
{
    const auto length = lookupString (event, text, size, symbol, status);
    const auto isDigit = *symbol >= '0' && *symbol <= '9';

    if (length == 1 && isDigit && (event->state & ControlMask) != 0)
    {
        *const_cast<char*> (text) = 0;
        return 0;
    }

    if (length > 0 && juce::CharPointer_UTF8::isValidString (text, length))
        return length;

    const auto ours = tessarin::KeyText::textOf (*symbol);

    if (ours.empty() || static_cast<int> (ours.size()) >= size)
        return length;

    std::memcpy (const_cast<char*> (text), ours.c_str(), ours.size() + 1);
    return static_cast<int> (ours.size());
}

/** To the window that the host has given to ours, or one around that which hears keys. */
void sendToHost (XKeyEvent key)
{
    const auto* x = juce::X11Symbols::getInstance();
    Window root = None, parent = None, *children = nullptr;
    unsigned int numChildren = 0;

    if (x->xQueryTree (key.display, key.window, &root, &parent, &children, &numChildren) == 0)
        return;

    if (children != nullptr)
        x->xFree (children);

    if (parent == None || parent == root)
        return;

    key.window = parent;
    XEvent event {};
    event.xkey = key;
    x->xSendEvent (key.display, parent, True, key.type == keyPress ? KeyPressMask : KeyReleaseMask, &event);
}

void passHeardKey()
{
    if (heardKey.type != keyPress)
        return;

    passedKeys.set (heardKey.keycode & 0xff);
    sendToHost (std::exchange (heardKey, {}));
}

/** A key that was sent by a program is not sent on: a host that gives its keys to the window with the focus would get
    it back for ever. */
int hearNextEvent (Display* connection, XEvent* event)
{
    const auto result = noteVisibility (connection, event);
    const auto isRelease = event->type == KeyRelease;

    if ((event->type != keyPress && ! isRelease) || event->xkey.send_event)
        heardKey = {};
    else if (! isRelease)
        heardKey = event->xkey;
    else if (const auto code = event->xkey.keycode & 0xff; passedKeys.test (code))
    {
        passedKeys.reset (code);
        sendToHost (event->xkey);
    }

    return result;
}

/** Keeps the function that was found, and gives ours in its place. */
template <typename Function>
void* replace (Function& original, void* found, Function ours)
{
    original = reinterpret_cast<Function> (found);
    return reinterpret_cast<void*> (ours);
}
} // namespace

void* tessarin::inPlaceOf (const char* name, void* found)
{
    const auto isCalled = [name] (const char* other) { return std::strcmp (name, other) == 0; };

    if (isCalled ("XOpenDisplay"))
        return replace (openDisplay, found, &openGuardedDisplay);

    if (isCalled ("XSetErrorHandler"))
        return reinterpret_cast<void*> (&setTrap);

    if (isCalled ("XGetInputFocus"))
        return replace (getInputFocus, found, &getOwnInputFocus);

    if (isCalled ("XGetWindowProperty"))
        return replace (getWindowProperty, found, &getOwnProperty);

    if (isCalled ("XLookupString"))
        return replace (lookupString, found, &lookupText);

    if (isCalled ("XNextEvent"))
    {
        passKeyToHost = &passHeardKey;
        return replace (nextEvent, found, &hearNextEvent);
    }

    return found;
}
