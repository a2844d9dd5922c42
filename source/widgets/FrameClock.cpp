#include "FrameClock.h"

#include "widgets/VisibleInWindow.h"

namespace luna
{

FrameClock::FrameClock (juce::Component& windowToWatch, std::function<bool()> isSeenToUse,
                        std::function<void()> onBeginToUse)
    : window (windowToWatch),
      isSeen (std::move (isSeenToUse)),
      onBegin (std::move (onBeginToUse)),
      screen (&window, [this] (double now) { beat (now); })
{
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

/** As often as the screen is painted, which is more often than a frame, or less. */
void FrameClock::beat (double now)
{
    if (now < nextFrame)
        return;

    nextFrame = juce::jmax (nextFrame + 0.001 * interval, now);

    if (! hasBegun())
    {
        takeOver (window);
        onBegin();
    }

    if (isSeen())
        showFrame();
}

void FrameClock::showFrame()
{
    for (const auto& mover : movers)
        if (isVisibleInWindow (*mover.component))
            mover.timer->timerCallback();
}

} // namespace luna
