#pragma once

#include "core/OrvoAudioProcessor.h"
#include "widgets/InputOutputMeters.h"
#include "widgets/Panel.h"
#include "widgets/RealtimeLabel.h"

#include <array>

/** The strip that shows what came in and what went out: six readouts beside the level meters. A click on any
    value clears all held ones. Message thread; reads what the audio thread publishes. */
class OutputPanel final : public luna::Panel
{
public:
    /** The processor outlives the panel. */
    explicit OutputPanel (OrvoAudioProcessor& processor);

    void paint (juce::Graphics&) override;
    void layoutContent() override;

    /** Starts all held values and both loudness measurements anew. */
    void resetMeters();

    /** In dB; at -100 and below there is no peak yet. */
    const std::function<juce::String (float)> peakValToLabel;

    /** In LUFS; at -300 there is no loudness yet. */
    const std::function<juce::String (float)> lufsToLabel;

    luna::temp::InputOutputMeters meters;
    RealtimeLabel shortTermInLabel, shortTermOutLabel, lufsDifferenceLabel;
    RealtimeLabel peakInLabel, peakOutLabel, peakDifferenceLabel;

private:
    [[nodiscard]] std::array<RealtimeLabel*, 6> getReadouts();
    void setTooltips();

    OrvoAudioProcessor& processor;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (OutputPanel)
};
