#include "../support/Sanitizers.h"
#include "BareHost.h"
#include "BareHostSupport.h"

#include <iterator>
#include <thread>

namespace
{
/** JUCE speaks of a window that is gone, which the server answers with errors. */
void resizeInVain (BareHost& host, EventLoop& loop)
{
    host.destroyHostsWindow();
    EXPECT_TRUE (host.setViewSize (900, 700));

    // The words leave with a look at the server, a hundred times a second, and the answers come later.
    for (auto turn = 0; turn < 10; ++turn)
        loop.serve (10);
}

/** How often the fault is provoked that is a matter of chance. */
constexpr auto rounds = 10000;

/** A host with its connection and its loop; the module is loaded once for all tests but those that say otherwise. */
class HostProcess : public testing::Test
{
protected:
    /** Of what was before, the log tells too. */
    HostProcess() { static_cast<void> (keptErrors()); }

    static const LoadedModule& module()
    {
        static const LoadedModule loaded (builtLibrary());
        return loaded;
    }

    /** Until the window is drawn and nothing is under way. */
    void settle (const BareHost& host)
    {
        ASSERT_TRUE (loop.serveUntil ([&] { return isDrawn (display, host.getPluginsWindow()); }));
    }

    HostsErrors errors;
    Display* const display = errors.display;
    EventLoop loop;
};

TEST_F (HostProcess, OutlivesAWindowThatGoesWithItsParent)
{
    BareHost host (module(), display, &loop);

    for (auto i = 0; i < 20; ++i)
    {
        host.openWindow();
        settle (host);
        host.destroyHostsWindow();

        // Something to draw and to ask about, in a window that is gone.
        for (auto turn = 0; turn < 10; ++turn)
            loop.serve (10);

        host.closeWindow();
        EXPECT_GT (keptErrors(), 0) << i;
    }
}

TEST_F (HostProcess, HearsOfItsOwnErrorsAndKeepsItsHandler)
{
    const auto inPlace = [] { return XSetErrorHandler (HostsErrors::hear); };
    const auto provoke = [this]
    {
        XMapWindow (display, 0x1fffffff);
        XSync (display, False);
    };

    BareHost host (module(), display, &loop), second (module(), display, &loop);
    EXPECT_EQ (inPlace(), HostsErrors::hear);
    host.openWindow();
    second.openWindow();
    settle (second);
    EXPECT_EQ (inPlace(), HostsErrors::hear);

    provoke();
    EXPECT_EQ (errors.takeHeard(), 1);

    // As a toolkit does around its own risky calls.
    XSetErrorHandler (HostsErrors::hearAsAnother);
    resizeInVain (host, loop);
    host.closeWindow();
    EXPECT_GT (keptErrors(), 0) << "nothing was provoked";
    provoke();
    EXPECT_EQ (errors.takeHeard(), 100);
    second.closeWindow();
    EXPECT_EQ (inPlace(), HostsErrors::hearAsAnother);
}

TEST_F (HostProcess, HoldsTwoModulesWithoutAWordBetweenThem)
{
    const TemporaryCopy copy (builtLibrary());
    BareHost host (module(), display, &loop);
    host.openWindow();
    settle (host);

    for (auto i = 0; i < 3; ++i)
    {
        const LoadedModule otherModule (copy.path);
        BareHost other (otherModule, display, &loop);
        other.openWindow();
        settle (other);
        resizeInVain (other, loop);
    }

    EXPECT_GT (keptErrors(), 0) << "nothing was provoked";
    resizeInVain (host, loop);
    host.closeWindow();
    EXPECT_GT (keptErrors(), 0) << "nothing was provoked";
    EXPECT_EQ (XSetErrorHandler (HostsErrors::hear), HostsErrors::hear);
}

TEST_F (HostProcess, IsLeftAsItWasWhenTheModuleIsUnloaded)
{
    const auto entriesOf = [] (const char* folder)
    { return std::distance (std::filesystem::directory_iterator (folder), {}); };

    const TemporaryCopy copy (builtLibrary());
    const auto threads = entriesOf ("/proc/self/task"), files = entriesOf ("/proc/self/fd");

    // At first without a window, as a scan goes.
    for (auto i = 0; i < 10; ++i)
    {
        const auto hasWindow = i >= 5;

        {
            const LoadedModule loaded (copy.path);

            // JUCE leaves objects with the thread that has a window, and the code stays for as long as that lives.
            std::thread host (
                [&]
                {
                    BareHost instance (loaded, display, &loop);

                    if (hasWindow)
                    {
                        instance.openWindow();
                        settle (instance);
                    }

                    if (i % 2 == 0)
                        instance.destroyHostsWindow();
                });
            host.join();
        }

        EXPECT_FALSE (isMapped (copy.path)) << i;
        EXPECT_EQ (entriesOf ("/proc/self/task"), threads) << i;

        // The thread sanitizer opens files to name the frames of what it suppresses.
        EXPECT_EQ (isThreadSanitized ? files : entriesOf ("/proc/self/fd"), files) << i;

        EXPECT_TRUE (loop.isUnused());
        EXPECT_EQ (XSetErrorHandler (HostsErrors::hear), HostsErrors::hear);
    }
}

TEST_F (HostProcess, MayHideMoveAndReparentTheWindow)
{
    BareHost host (module(), display, &loop);
    host.openWindow();
    settle (host);

    const auto window = host.getHostsWindow();
    const auto root = DefaultRootWindow (display);
    const auto elsewhere = XCreateSimpleWindow (display, root, 50, 50, 1300, 1000, 0, 0, 0);

    for (auto i = 0; i < 20; ++i)
    {
        // Another desktop, for a window, is to be hidden.
        XUnmapWindow (display, window);
        loop.serve (5);
        XReparentWindow (display, window, i % 2 == 0 ? elsewhere : root, 10, 10);
        XMapWindow (display, window);
        loop.serve (5);
        host.resizeWindow (1068 + i, 800);
        loop.serve (5);
    }

    XDestroyWindow (display, elsewhere);
    settle (host);
}

/** Hosts on a toolkit of their own do so when they hear of the click that opened it. */
TEST_F (HostProcess, MayTakeTheFocusToItsOwnWindowWhileAMenuComes)
{
    constexpr auto modeBox = std::pair (326, 625), elsewhere = std::pair (60, 560);
    const auto focused = [this]
    {
        Window window = 0;
        int revert = 0;
        XGetInputFocus (display, &window, &revert);
        return window;
    };

    BareHost host (module(), display, &loop);
    host.openWindow();
    settle (host);
    const auto without = shownWindows (display);
    const auto hasMenu = [&] { return shownWindows (display) > without; };

    // JUCE looks at the focus twenty times a second, and makes no menu in the same moment in which one has gone.
    const auto wait = [this]
    {
        for (auto turn = 0; turn < 30; ++turn)
            loop.serve (10);
    };

    for (const auto isLate : { false, true, false, true })
    {
        click (display, host.getPluginsWindow(), modeBox);
        ASSERT_TRUE (loop.serveUntil (
            [&] { return focused() == host.getPluginsWindow() && (hasMenu() || ! isLate); }));
        XSetInputFocus (display, host.getHostsWindow(), RevertToParent, CurrentTime);
        ASSERT_TRUE (loop.serveUntil (hasMenu)) << isLate;
        wait();
        EXPECT_TRUE (hasMenu()) << isLate;

        click (display, host.getPluginsWindow(), elsewhere);
        ASSERT_TRUE (loop.serveUntil ([&] { return ! hasMenu(); }));
        wait();
    }
}

TEST_F (HostProcess, MayBeBusyElsewhere)
{
    BareHost host (module(), display, &loop);
    host.openWindow();
    settle (host);

    // Nobody serves the loop meanwhile.
    for (auto i = 0; i < 20000; ++i)
    {
        XEvent moved {};
        moved.xmotion.type = MotionNotify;
        moved.xmotion.window = host.getPluginsWindow();
        moved.xmotion.x = i % 1000;
        moved.xmotion.y = i % 700;
        XSendEvent (display, moved.xmotion.window, False, NoEventMask, &moved);
    }

    XSync (display, False);
    host.resizeWindow (1200, 900);
    ASSERT_TRUE (host.setViewSize (1200, 900));
    EXPECT_TRUE (
        loop.serveUntil ([&] { return sizeOf (display, host.getPluginsWindow()) == std::pair (1200, 900); }));
}

/** JUCE then runs a thread of its own for its messages, and opens the window beside it without its lock: that race is
    JUCE's, and the sanitizers see it now and then. */
TEST_F (HostProcess, MayLackAnEventLoop)
{
    if (isAddressSanitized || isThreadSanitized)
        GTEST_SKIP() << "the sanitizers stop at JUCE's race";

    BareHost host (module(), display, nullptr);

    for (auto i = 0; i < 20; ++i)
    {
        host.openWindow();
        settle (host);

        if (i % 2 == 0)
            host.destroyHostsWindow();

        host.closeWindow();
    }
}

TEST_F (HostProcess, OutlivesQuestionsAboutAFocusedWindowThatIsJustGone)
{
    const FleetingFocus other;
    BareHost host (module(), display, &loop);
    host.openWindow();
    settle (host);

    // Being told of the focus, JUCE asks which window has it, and then who that window's parents are.
    for (auto i = 0; i < rounds; ++i)
    {
        XEvent told {};
        told.xfocus.type = i % 2 == 0 ? FocusOut : FocusIn;
        told.xfocus.window = host.getPluginsWindow();
        XSendEvent (display, told.xfocus.window, False, NoEventMask, &told);
        XFlush (display);
        loop.serve (1);
    }

    // The window is another program's, so JUCE need not ask at all.
    host.closeWindow();
    EXPECT_EQ (keptErrors(), 0);
}
} // namespace
