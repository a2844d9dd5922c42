#pragma once

#include "widgets/LevelMeterTicks.h"
#include "widgets/StereoLevelMeters.h"

#include <array>
#include <functional>

namespace luna::temp
{

/** The levels of what enters and what leaves the plug-in, with one scale between both pairs. */
class InputOutputMeters final : public juce::Component
{
public:
    using Processor = InputOutputLevelProcessor;

    /** `processor` outlives the meters; without one they show silence. */
    explicit InputOutputMeters (Processor* processor);

    void resized() override;

    /** Runs for a click on any read-out. Resets all maxima unless replaced. */
    std::function<void()> onMaxClick;

    Processor* processor;

    /** Take effect at the next layout. */
    bool showPeakValues = true;
    bool showRmsValues = true;

    StereoLevelMeters inputMeters;
    LevelMeterTicks ticks;
    StereoLevelMeters outputMeters;

    juce::Label peakCaption;
    juce::Label rmsCaption;
    juce::Label inCaption;
    juce::Label outCaption;

    /** Left and right of the input, left and right of the output. */
    std::array<juce::Label, 4> channelCaptions;

private:
    void nameMeters (StereoLevelMeters&, const juce::String& place, const juce::String& title);
    void addCaption (juce::Label&, const juce::String& text);
    void placeTicks();

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (InputOutputMeters)
};

} // namespace luna::temp
