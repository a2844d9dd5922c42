#pragma once

namespace juce::detail
{
bool dispatchNextMessageOnSystemQueue (bool returnIfNoPendingMessages);
}

/** Runs what was posted to the message thread, the calling one, until nothing is left. */
inline void dispatchMessages()
{
    while (juce::detail::dispatchNextMessageOnSystemQueue (true))
    {
    }
}
