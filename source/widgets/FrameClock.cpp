#include "FrameClock.h"

#include "widgets/VisibleInWindow.h"

namespace luna
{

namespace
{
/** Between two looks at whether anybody sees the window. */
constexpr auto framesBetweenLooks = 30;
} // namespace

void FrameClock::start (juce::Component& window, std::function<bool()> isSeenToUse)
{
    isSeen = std::move (isSeenToUse);
    takeOver (window);
    startTimer (interval);
}

void FrameClock::takeOver (juce::Component& component)
{
    if (auto* timer = dynamic_cast<juce::Timer*> (&component);
        timer != nullptr && timer->getTimerInterval() == interval)
    {
        timer->stopTimer();
        movers.push_back ({ &component, timer });
    }

    for (auto* child : component.getChildren())
        takeOver (*child);
}

void FrameClock::timerCallback()
{
    if (--framesToLook < 0)
    {
        const auto isSeenNow = isSeen();
        framesToLook = isSeenNow ? framesBetweenLooks : 0;

        if (const auto wanted = isSeenNow ? interval : interval * framesBetweenLooks;
            wanted != getTimerInterval())
            startTimer (wanted);

        if (! isSeenNow)
            return;
    }

    for (const auto& mover : movers)
        if (isVisibleInWindow (*mover.component))
            mover.timer->timerCallback();
}

} // namespace luna
