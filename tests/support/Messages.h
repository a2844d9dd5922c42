#pragma once

#include <juce_core/juce_core.h>

namespace juce::detail
{
bool dispatchNextMessageOnSystemQueue (bool returnIfNoPendingMessages);
}

/** Runs what was posted to the message thread, the calling one, until nothing is left; then what a timer of a frame's
    length has put off. */
inline void dispatchMessages()
{
    for (const auto wait : { 0, 40 })
    {
        juce::Thread::sleep (wait);

        while (juce::detail::dispatchNextMessageOnSystemQueue (true))
        {
        }
    }
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
