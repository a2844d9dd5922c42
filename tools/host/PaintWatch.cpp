#include "PaintWatch.h"

#include "Failure.h"
#include "XLibrary.h"

#include <poll.h>
#include <X11/extensions/Xdamage.h>
#include <X11/Xlib.h>

#include <utility>

namespace
{
template <typename Function>
Function* findXdamage (const char* name)
{
    return reinterpret_cast<Function*> (findInLibrary ("libXdamage.so.1", name));
}

double now()
{
    return juce::Time::getMillisecondCounterHiRes() / 1000.0;
}

juce::Rectangle<int> areaOf (const XRectangle& r)
{
    return { r.x, r.y, r.width, r.height };
}
} // namespace

/** The functions are looked up once, so that listening costs little. */
struct PaintWatch::Connection
{
    Connection() : display (findX11<decltype (XOpenDisplay)> ("XOpenDisplay") (nullptr))
    {
        if (display == nullptr)
            throw Failure ("there is no X server to listen to");

        auto errorBase = 0;

        if (! findXdamage<decltype (XDamageQueryExtension)> ("XDamageQueryExtension") (display, &eventBase,
                                                                                       &errorBase))
        {
            close (display);
            throw Failure ("the X server does not tell what is painted");
        }
    }

    ~Connection() { close (display); }

    Connection (const Connection&) = delete;
    Connection& operator= (const Connection&) = delete;

    /** The one window with pixels in this one. JUCE adds windows without any, for the keys. */
    [[nodiscard]] Window childOf (Window parent) const
    {
        Window root = 0, above = 0, found = 0;
        Window* children = nullptr;
        auto count = 0u;

        if (findX11<decltype (XQueryTree)> ("XQueryTree") (display, parent, &root, &above, &children, &count))
            for (auto i = 0u; i < count; ++i)
                if (XWindowAttributes attributes {};
                    getAttributes (display, children[i], &attributes) && attributes.c_class == InputOutput)
                    found = children[i];

        if (children != nullptr)
            findX11<decltype (XFree)> ("XFree") (children);

        return found;
    }

    decltype (XCloseDisplay)* close = findX11<decltype (XCloseDisplay)> ("XCloseDisplay");
    decltype (XSync)* sync = findX11<decltype (XSync)> ("XSync");
    decltype (XPending)* pending = findX11<decltype (XPending)> ("XPending");
    decltype (XNextEvent)* nextEvent = findX11<decltype (XNextEvent)> ("XNextEvent");
    decltype (XGetWindowAttributes)* getAttributes =
        findX11<decltype (XGetWindowAttributes)> ("XGetWindowAttributes");

    Display* display;
    int eventBase = 0;
    Window window = 0;
    Damage damage = 0;
};

PaintWatch::PaintWatch() : connection (std::make_unique<Connection>())
{
}

PaintWatch::~PaintWatch() = default;

void PaintWatch::begin (unsigned long hostWindow)
{
    end();

    // The host's window holds JUCE's place for a foreign one, and that the module's.
    const auto place = connection->childOf (hostWindow);
    connection->window = place != 0 ? connection->childOf (place) : 0;

    if (connection->window == 0)
        throw Failure ("the module has put no window into the host's");

    XWindowAttributes attributes {};
    connection->getAttributes (connection->display, connection->window, &attributes);
    whole = { attributes.width, attributes.height };

    connection->damage = findXdamage<decltype (XDamageCreate)> ("XDamageCreate") (
        connection->display, connection->window, XDamageReportRawRectangles);

    // The first report is of what is there already.
    connection->sync (connection->display, False);
    listen (0);
    painted.clear();
    paints = {};
    lastPaint = now();
}

void PaintWatch::end()
{
    if (const auto damage = std::exchange (connection->damage, 0); damage != 0)
        findXdamage<decltype (XDamageDestroy)> ("XDamageDestroy") (connection->display, damage);
}

void PaintWatch::listen (int milliseconds)
{
    pollfd file { ConnectionNumber (connection->display), POLLIN, 0 };
    if (connection->pending (connection->display) == 0)
        poll (&file, 1, milliseconds);

    while (connection->pending (connection->display) > 0)
    {
        XEvent event {};
        connection->nextEvent (connection->display, &event);

        if (event.type != connection->eventBase + XDamageNotify)
            continue;

        const auto& paint = reinterpret_cast<const XDamageNotifyEvent&> (event);
        if (paint.damage != connection->damage)
            continue;

        const auto area = areaOf (paint.area);
        whole = areaOf (paint.geometry).withZeroOrigin();
        lastPaint = now();
        paints.pixels += static_cast<juce::int64> (area.getWidth()) * area.getHeight();

        // A drawing command of several rectangles is told in as many events.
        paints.count += paint.more ? 0 : 1;

        if (! hasPicture())
            painted.add (area);
    }
}

PaintWatch::Paints PaintWatch::takePaints()
{
    return std::exchange (paints, {});
}

bool PaintWatch::hasPicture() const
{
    return ! whole.isEmpty() && painted.containsRectangle (whole);
}

double PaintWatch::getQuietSeconds() const
{
    return now() - lastPaint;
}

bool PaintWatch::isOnScreen() const
{
    XWindowAttributes attributes {};
    return connection->getAttributes (connection->display, connection->window, &attributes)
           && attributes.map_state == IsViewable;
}
