#pragma once

#include <atomic>

namespace tessarin
{

/** Gives the key that is being heard to the host's window around ours (see `module/WindowSystem.cpp`). Null where
    there is none. To be called on the message thread, while the key is told to components. */
inline std::atomic<void (*)()> passKeyToHost { nullptr };

} // namespace tessarin
