#pragma once

#include "widgets/LevelMeter.h"

namespace luna::temp
{

/** The scale beside a meter. Reaches 10 pixels beyond the meter at both ends, so that the outer labels fit.
    */
class LevelMeterTicks final : public juce::Component
{
public:
    /** `meter` outlives the ticks. */
    explicit LevelMeterTicks (const LevelMeter* meter);

    void paint (juce::Graphics&) override;
    void enablementChanged() override;

    /** Top of a label's box of 20; the mark stands in its middle. */
    [[nodiscard]] int getLabelY (int db) const noexcept;

    /** In dB. */
    juce::Array<int> ticks;

    /** Gives height and scale. */
    const LevelMeter* meter;

    /** 0: labels to the left, 1: to the right, 2: in the centre with a mark on either side. */
    int side = 0;

private:
    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (LevelMeterTicks)
};

} // namespace luna::temp
