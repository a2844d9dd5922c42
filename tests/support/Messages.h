#pragma once

#include <juce_core/juce_core.h>

#include <limits>

namespace juce::detail
{
bool dispatchNextMessageOnSystemQueue (bool returnIfNoPendingMessages);
}

/** Runs what was posted to the message thread, the calling one, until nothing is left, or so many of it. */
inline void dispatchPosted (int most = std::numeric_limits<int>::max())
{
    while (most-- > 0 && juce::detail::dispatchNextMessageOnSystemQueue (true))
    {
    }
}

/** And then what a timer of a frame's length has put off. */
inline void dispatchMessages()
{
    for (const auto wait : { 0, 40 })
    {
        juce::Thread::sleep (wait);
        dispatchPosted();
    }
}

/** Waits for messages, of which another process or thread sends the last. */
template <typename Condition>
void dispatchUntil (Condition&& condition)
{
    for (auto i = 0; i < 10000 && ! condition(); ++i)
        juce::detail::dispatchNextMessageOnSystemQueue (false);
}

/** Whether it comes true while messages and timers run; at once if it does at once. */
template <typename Condition>
bool eventually (Condition&& condition)
{
    for (auto i = 0; i < 100; ++i)
    {
        if (condition())
            return true;

        dispatchMessages();
    }

    return condition();
}
