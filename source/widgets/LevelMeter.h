#pragma once

#include "dsp/LevelChannel.h"
#include "widgets/DecibelMeterBase.h"

namespace luna::temp
{

/** The level of one channel as a bar of its peak, one of its RMS in front of that, and a line at the held
    peak.

    Polls its channel, which outlives it. Message thread; levels are linear, 1 is full scale.
*/
class LevelMeter final : public DecibelMeterBase, public juce::Timer, public juce::SettableTooltipClient
{
public:
    explicit LevelMeter (LevelChannel* channel);

    void paint (juce::Graphics&) override;
    void enablementChanged() override;
    void timerCallback() override;

    /** What is filled for a level. RMS stands 3 dB higher, so that a sine's ends where its peak does. */
    [[nodiscard]] juce::Rectangle<int> getBar (double level, bool isRms) const noexcept;

    /** The held peak's row, whether or not it is drawn. */
    [[nodiscard]] int getHoldLineY() const noexcept;

    double peak = 0.0;
    double rms = 0.0;
    double heldPeak = 0.0;
    double maxPeak = 0.0;
    double maxRms = 0.0;

    /** Bars hang from the top or the right edge and show what is missing. */
    bool inverted = false;

    LevelChannel* channel;

    bool showPeak = true;
    bool showRms = true;
    bool showHold = true;

private:
    /** What of the levels is seen. */
    struct Look
    {
        juce::Rectangle<int> peakBar, rmsBar;

        /** The row of the line, or -1. */
        int holdLine = -1;
        bool isOver = false;
    };

    [[nodiscard]] Look getLook() const noexcept;
    void repaintChanges (const Look& before, const Look& now);
    [[nodiscard]] double getBarProportion (double level, bool isRms) const noexcept;

    [[nodiscard]] bool isOver() const noexcept { return heldPeak > 1.0; }

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (LevelMeter)
};

} // namespace luna::temp
