#pragma once

#include <atomic>
#include <map>

// What `module/WindowSystem.cpp` overhears of what the X server tells us.

namespace tessarin
{

/** The errors on our own connection to the X server that were kept from the host since somebody last asked, of all
    windows of the process. Any thread. */
inline std::atomic<int> windowSystemErrors { 0 };

/** What has been told of a window's visibility. */
struct WindowView
{
    /** Others cover it wholly. */
    bool isCovered = false;

    /** How often something was told. */
    int numChanges = 0;
};

/** By the X server's number of the window; of those only that asked to be told. Message thread. */
inline std::map<unsigned long, WindowView> windowViews;

} // namespace tessarin
