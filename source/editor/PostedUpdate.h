#pragma once

#include <juce_events/juce_events.h>

#include <atomic>
#include <functional>

namespace tessarin
{

/** Runs a function on the message thread soon after any thread has asked for it.

    However fast a host automates, it runs no more than 60 times a second: JUCE's queue is worked off to its end before
    the window system is heard again, so that messages which come as fast as they are dealt with would freeze the
    window. Made and destroyed on the message thread; a message that comes too late does nothing.
*/
class PostedUpdate final : private juce::Timer
{
public:
    explicit PostedUpdate (std::function<void()> functionToRun) : function (std::move (functionToRun)) {}

    /** On any thread. Posts a message unless one is under way already. */
    void post()
    {
        if (isWanted.exchange (true))
            return;

        juce::MessageManager::callAsync (
            [update = weakThis]
            {
                // Within an interval the timer sees to it.
                if (update != nullptr && ! update->isTimerRunning())
                    update->run();
            });
    }

private:
    void run()
    {
        constexpr auto intervalInMs = 16;
        startTimer (intervalInMs);
        isWanted = false;
        function();
    }

    void timerCallback() override
    {
        stopTimer();

        if (isWanted)
            run();
    }

    const std::function<void()> function;
    std::atomic<bool> isWanted { false };

    JUCE_DECLARE_WEAK_REFERENCEABLE (PostedUpdate)

    /** Made on the message thread, for posts from other threads. */
    const juce::WeakReference<PostedUpdate> weakThis { this };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (PostedUpdate)
};

} // namespace tessarin
