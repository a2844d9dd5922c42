#include "PictureDelay.h"

#include "widgets/FrameClock.h"
#include "widgets/PixelPicture.h"

#include <algorithm>
#include <utility>

namespace luna
{

PictureDelay::~PictureDelay()
{
    for (const auto& each : std::exchange (waiting, {}))
        each.picture->stopWaiting();
}

void PictureDelay::putOffPictures()
{
    constexpr auto millisecondsToSettle = 150;
    hasSettled = false;
    startTimer (millisecondsToSettle);
}

bool PictureDelay::putsOff (PixelPicture& picture, int numPixels)
{
    if (! isTimerRunning())
        return false;

    const auto isThis = [&] (const Waiting& each) { return each.picture == &picture; };

    if (std::ranges::any_of (waiting, isThis))
        return true;

    if (hasSettled)
        return false;

    waiting.push_back ({ &picture, numPixels });
    return true;
}

void PictureDelay::forget (const PixelPicture& picture)
{
    std::erase_if (waiting, [&] (const Waiting& each) { return each.picture == &picture; });
}

/** Those inside another have been made with it by the next frame, and wait no more. */
void PictureDelay::timerCallback()
{
    constexpr auto pixelsPerFrame = 250'000;

    if (! std::exchange (hasSettled, true))
        startTimer (FrameClock::interval);

    for (auto pixels = 0; ! waiting.empty() && pixels < pixelsPerFrame;)
    {
        const auto next = waiting.front();
        waiting.erase (waiting.begin());
        pixels += next.numPixels;
        next.picture->stopWaiting();
        next.picture->makeAnew();
    }

    if (waiting.empty())
        stopTimer();
}

} // namespace luna
