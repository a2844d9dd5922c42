#pragma once

#include "scratch/TemporaryFolder.h"
#include "XlibBesideGtest.h"

#include <filesystem>
#include <utility>

/** The library in the bundle that this build made, or what the environment variable ORVO_LIBRARY names. */
[[nodiscard]] std::filesystem::path builtLibrary();

/** A host's connection and its error handler, which ends the process if it hears of an error of any other connection:
    that can only be the plug-in's. */
struct HostsErrors
{
    HostsErrors();
    ~HostsErrors();

    HostsErrors (const HostsErrors&) = delete;
    HostsErrors& operator= (const HostsErrors&) = delete;

    static int hear (Display*, XErrorEvent*);

    /** Counts each error a hundred times. */
    static int hearAsAnother (Display*, XErrorEvent*);

    /** The errors heard of since the last call. */
    [[nodiscard]] int takeHeard();

    Display* const display;
};

/** A second program that gives the focus to a window and destroys it, over and over. */
class FleetingFocus
{
public:
    FleetingFocus();
    ~FleetingFocus();

    FleetingFocus (const FleetingFocus&) = delete;
    FleetingFocus& operator= (const FleetingFocus&) = delete;

private:
    int process;
};

/** A second file of the same module, which the loader takes for another one. */
struct TemporaryCopy
{
    explicit TemporaryCopy (const std::filesystem::path&);

    const TemporaryFolder folder;
    const std::filesystem::path path;
};

/** Where the plug-in keeps its files. */
[[nodiscard]] std::filesystem::path configFolder();

/** The key, down and up again, told to the window by the X server's own kind of event. */
void press (Display*, Window, const char* key);

/** The left button, down and up again, at this place of the window. */
void click (Display*, Window, std::pair<int, int> place);

/** How many windows of the screen's own are mapped: a menu is one, which no window manager frames. */
[[nodiscard]] int shownWindows (Display*);

/** Whether the process has the library's code in its memory. */
[[nodiscard]] bool isMapped (const std::filesystem::path&);

/** The errors that the plug-in's log tells of, whose lines are then forgotten. */
[[nodiscard]] int keptErrors();

/** Whether the window shows more than one colour. */
[[nodiscard]] bool isDrawn (Display*, Window);

/** The window's width and height. */
[[nodiscard]] std::pair<int, int> sizeOf (Display*, Window);
