#include "BareHostSupport.h"

#include "../support/ScreenLibraries.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <X11/Xutil.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

namespace
{
Display* hostsDisplay = nullptr;
int heard = 0;

void requireOwn (Display* display)
{
    if (display == hostsDisplay)
        return;

    constexpr char message[] = "an error of the plug-in's connection reached the host\n";
    [[maybe_unused]] const auto written = write (STDERR_FILENO, message, sizeof (message) - 1);
    _exit (70);
}

std::filesystem::path logFile()
{
    return configFolder() / "log.log";
}

[[noreturn]] void stealFocusForEver()
{
    prctl (PR_SET_PDEATHSIG, SIGKILL);
    XSetErrorHandler ([] (Display*, XErrorEvent*) { return 0; });
    auto* display = XOpenDisplay (nullptr);

    // The window manager would give windows a frame, and time.
    XSetWindowAttributes unmanaged {};
    unmanaged.override_redirect = True;

    for (;;)
    {
        const auto window =
            XCreateWindow (display, DefaultRootWindow (display), 0, 0, 1, 1, 0, CopyFromParent, InputOutput,
                           nullptr, CWOverrideRedirect, &unmanaged);
        XMapWindow (display, window);
        XSetInputFocus (display, window, RevertToPointerRoot, CurrentTime);
        XSync (display, False);
        XDestroyWindow (display, window);
        XSync (display, False);
    }
}

/** Keys and buttons have the same beginning. */
XEvent makeEvent (Display* display, Window window, int type)
{
    XEvent event {};
    event.xkey.type = type;
    event.xkey.display = display;
    event.xkey.window = window;
    event.xkey.root = DefaultRootWindow (display);
    event.xkey.same_screen = True;
    return event;
}
} // namespace

std::filesystem::path builtLibrary()
{
    const auto* other = getenv ("ORVO_LIBRARY");
    return other != nullptr ? other : ORVO_LIBRARY;
}

HostsErrors::HostsErrors() : display (XOpenDisplay (nullptr))
{
    if (display == nullptr)
        throw std::runtime_error ("this needs a screen");

    hostsDisplay = display;
    XSetErrorHandler (hear);
}

HostsErrors::~HostsErrors()
{
    XCloseDisplay (display);
}

int HostsErrors::hear (Display* display, XErrorEvent*)
{
    requireOwn (display);
    return ++heard;
}

int HostsErrors::hearAsAnother (Display* display, XErrorEvent*)
{
    requireOwn (display);
    return heard += 100;
}

int HostsErrors::takeHeard()
{
    return std::exchange (heard, 0);
}

FleetingFocus::FleetingFocus() : process (fork())
{
    if (process == 0)
        stealFocusForEver();
}

FleetingFocus::~FleetingFocus()
{
    kill (process, SIGKILL);
    waitpid (process, nullptr, 0);
}

TemporaryCopy::TemporaryCopy (const std::filesystem::path& file) : path (folder.path / file.filename())
{
    std::filesystem::copy_file (file, path);
}

std::filesystem::path configFolder()
{
    return std::filesystem::path (getenv ("XDG_CONFIG_HOME")) / "Tessarin/Orvo";
}

void press (Display* display, Window window, const char* key)
{
    for (const auto type : { KeyPress, KeyRelease })
    {
        auto event = makeEvent (display, window, type);
        event.xkey.keycode = XKeysymToKeycode (display, XStringToKeysym (key));
        XSendEvent (display, window, False, NoEventMask, &event);
    }

    XSync (display, False);
}

void click (Display* display, Window window, std::pair<int, int> place)
{
    for (const auto type : { ButtonPress, ButtonRelease })
    {
        auto event = makeEvent (display, window, type);
        event.xbutton.button = Button1;
        event.xbutton.x = event.xbutton.x_root = place.first;
        event.xbutton.y = event.xbutton.y_root = place.second;
        event.xbutton.state = type == ButtonRelease ? Button1Mask : 0;
        XSendEvent (display, window, False, NoEventMask, &event);
    }

    XSync (display, False);
}

int shownWindows (Display* display)
{
    Window root = 0, parent = 0, *children = nullptr;
    unsigned int numChildren = 0;
    XQueryTree (display, DefaultRootWindow (display), &root, &parent, &children, &numChildren);
    auto numShown = 0;

    for (auto i = 0u; i < numChildren; ++i)
    {
        XWindowAttributes attributes {};
        numShown +=
            XGetWindowAttributes (display, children[i], &attributes) && attributes.map_state == IsViewable;
    }

    if (children != nullptr)
        XFree (children);

    return numShown;
}

bool isMapped (const std::filesystem::path& library)
{
    std::ifstream maps ("/proc/self/maps");

    for (std::string line; std::getline (maps, line);)
        if (line.ends_with (library.string()))
            return true;

    return false;
}

int keptErrors()
{
    constexpr std::string_view words = "kept from the host: ";
    std::ifstream log (logFile());
    auto sum = 0;

    for (std::string line; std::getline (log, line);)
        if (const auto found = line.find (words); found != std::string::npos)
            sum += std::stoi (line.substr (found + words.size()));

    std::ofstream (logFile(), std::ios::trunc);
    return sum;
}

bool isDrawn (Display* display, Window window)
{
    XWindowAttributes attributes {};

    if (window == 0 || XGetWindowAttributes (display, window, &attributes) == 0
        || attributes.map_state != IsViewable)
        return false;

    // The top bar, with the plug-in's name and its buttons.
    auto* picture = XGetImage (display, window, 0, 0, 400, 30, AllPlanes, ZPixmap);

    if (picture == nullptr)
        return false;

    auto differs = false;

    for (auto x = 1; x < 400 && ! differs; ++x)
        differs = XGetPixel (picture, x, 19) != XGetPixel (picture, 0, 19);

    XDestroyImage (picture);
    return differs;
}

std::pair<int, int> sizeOf (Display* display, Window window)
{
    XWindowAttributes attributes {};
    return XGetWindowAttributes (display, window, &attributes) == 0
               ? std::pair (0, 0)
               : std::pair (attributes.width, attributes.height);
}

int main (int argc, char** argv)
{
    keepScreenLibrariesLoaded();
    testing::InitGoogleTest (&argc, argv);

    // The plug-in's files, away from the user's.
    const TemporaryHome home;

    // Without presets, a message lies over the window.
    std::filesystem::create_directories (configFolder() / "Presets");
    std::filesystem::copy (ORVO_PRESETS, configFolder() / "Presets/Factory",
                           std::filesystem::copy_options::recursive);
    return RUN_ALL_TESTS();
}
