#pragma once

#include "dsp/LevelProcessors.h"
#include "widgets/LevelMeterPeakValue.h"

#include <functional>

namespace luna::temp
{

/** Two meters side by side under rows of read-outs. */
class StereoLevelMeters final : public juce::Component
{
public:
    using Processor = StereoLevelProcessor;

    /** `processor` outlives the meters; without one they show silence. */
    StereoLevelMeters (Processor* processor, bool showPeakValues, bool showRmsValues);

    void resized() override;

    void setReadOutsVisible (bool peakValues, bool rmsValues);

    /** Runs for a click on any read-out. Resets the pair's maxima unless replaced. */
    std::function<void()> onMaxClick;

    LevelMeter leftMeter;
    LevelMeter rightMeter;

    LevelMeterPeakValue leftPeakValue;
    LevelMeterPeakValue rightPeakValue;
    LevelMeterPeakValue leftRmsValue;
    LevelMeterPeakValue rightRmsValue;

private:
    void layOut();
    void addReadOut (LevelMeterPeakValue&, const juce::String& tooltip, const juce::String& title);

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (StereoLevelMeters)
};

} // namespace luna::temp
