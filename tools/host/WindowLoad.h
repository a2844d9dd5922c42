#pragma once

#include "PaintWatch.h"
#include "TurnLog.h"

/** What the module's window took over a while, as a row of a table. */
class WindowLoad
{
public:
    WindowLoad (const TurnLog& log, const PaintWatch::Paints& paints, double seconds);

    /** What stands over the columns of `toString`. */
    [[nodiscard]] static juce::String titles();

    [[nodiscard]] juce::String toString() const;

private:
    double share = 0.0, framesPerSecond = 0.0, paintsPerSecond = 0.0, pixelsPerSecond = 0.0;
    double medianFrame = 0.0, longestFrame = 0.0;

    /** Negative where they cannot be counted. */
    double allocationsPerFrame = 0.0;
};
