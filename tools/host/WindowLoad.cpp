#include "WindowLoad.h"

#include <algorithm>

namespace
{
juce::String cell (const juce::String& text, int width)
{
    return text.paddedLeft (' ', width + 2);
}
} // namespace

WindowLoad::WindowLoad (const TurnLog& log, const PaintWatch::Paints& paints, double seconds)
    : share (log.getThreadSeconds() / seconds),
      paintsPerSecond (static_cast<double> (paints.count) / seconds),
      pixelsPerSecond (static_cast<double> (paints.pixels) / seconds),
      allocationsPerFrame (log.seesAllocations() ? 0.0 : -1.0)
{
    std::vector<double> frames;
    juce::uint64 allocations = 0;

    for (const auto& frame : log.getFrames())
    {
        frames.push_back (frame.seconds);
        allocations += frame.allocations;
    }

    if (frames.empty())
        return;

    const auto middle = frames.begin() + static_cast<std::ptrdiff_t> (frames.size() / 2);
    std::nth_element (frames.begin(), middle, frames.end());
    medianFrame = *middle;
    longestFrame = *std::max_element (frames.begin(), frames.end());
    framesPerSecond = static_cast<double> (frames.size()) / seconds;

    if (log.seesAllocations())
        allocationsPerFrame = static_cast<double> (allocations) / static_cast<double> (frames.size());
}

juce::String WindowLoad::titles()
{
    return "  % of a core  frames/s  median ms  longest ms  paints/s  Mpixels/s  allocations/frame";
}

juce::String WindowLoad::toString() const
{
    return cell (juce::String (100.0 * share, 1), 11) + cell (juce::String (framesPerSecond, 1), 8)
           + cell (juce::String (1.0e3 * medianFrame, 2), 9)
           + cell (juce::String (1.0e3 * longestFrame, 2), 10) + cell (juce::String (paintsPerSecond, 1), 8)
           + cell (juce::String (1.0e-6 * pixelsPerSecond, 2), 9)
           + cell (allocationsPerFrame < 0.0 ? juce::String ("-") : juce::String (allocationsPerFrame, 1),
                   17);
}
