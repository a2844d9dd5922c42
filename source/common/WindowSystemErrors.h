#pragma once

#include <atomic>

namespace tessarin
{

/** The errors on our own connection to the X server that were kept from the host (see `module/WindowSystem.cpp`) since
    somebody last asked, of all windows of the process. Any thread. */
inline std::atomic<int> windowSystemErrors { 0 };

} // namespace tessarin
