#pragma once

#include "widgets/LevelMeter.h"

#include <functional>

namespace luna::temp
{

/** A number that shows one of a meter's maxima since the last reset, in dB. */
class LevelMeterPeakValue final : public juce::Label, public juce::Timer
{
public:
    enum Kind
    {
        maximumPeak = 0,
        maximumRms = 1
    };

    /** `meter` outlives the read-out. */
    LevelMeterPeakValue (LevelMeter* meter, int kind);

    void mouseDown (const juce::MouseEvent&) override;
    bool keyPressed (const juce::KeyPress&) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;
    void timerCallback() override;

    void lookAndFeelChanged() override { updateColour(); }

    /** RMS is shown 3 dB higher, as the meter does, but for the faintest levels. */
    [[nodiscard]] static juce::String format (double level, int kind);

    /** As shown, but for the greatest. */
    [[nodiscard]] static double toDecibels (double level, int kind);

    std::function<void()> onClick;
    LevelMeter* meter;
    int kind;

private:
    void updateColour();

    /** False if that means nothing. */
    bool press();

    /** Of the text. */
    bool wasLive = false;
    double shownLevel = 0.0;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (LevelMeterPeakValue)
};

} // namespace luna::temp
