#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace luna::temp
{

/** Base of components with a decibel scale that ends at 0 dB and gives its upper part more room. */
class DecibelMeterBase : public juce::Component
{
public:
    /** How much of the scale lies below a level: 0 at `minimumDecibels` and below it, 1 at 0 dB and above. */
    [[nodiscard]] double proportionOf (double db) const noexcept;

    /** -100 for silence and for what is no number. */
    [[nodiscard]] static double toDecibels (double gain) noexcept;

    float skew = 2.0f;
    float minimumDecibels = -60.0f;
};

} // namespace luna::temp
